#pragma once

#include "Definitions.h"
#include "OracleNumber.h"
#include "SqliteDatabase.h"

#include <map>
#include <optional>
#include <string>

namespace ora {

struct SequenceDefinition {
    ObjectId id = 0;
    OracleNumber minimum;
    OracleNumber maximum;
    OracleNumber increment{1};
    OracleNumber next; // the first number that nobody has taken, as far as the file knows
    bool cycle = false;
    bool ordered = false;
    int cache = 20; // numbers taken from the file at once; 0: NOCACHE
    ObjectId identityOf = 0;

    // The one that follows. Throws ORA-08004 past the end. name is for the message.
    OracleNumber after(const OracleNumber& number, const std::string& name) const;
};

// The sequences as one session sees them. Numbers are taken from the file in caches, so that most
// NEXTVALs write nothing; what is left of a cache is lost when the session ends.
class Sequences {
public:
    // db is not owned. owner: in upper case, the schema of every sequence.
    Sequences(const SqliteDatabase& db, std::string owner);

    // name: "OWNER.NAME". Throws OraError 2289, 8002, 8004.
    OracleNumber nextValue(const std::string& name);
    OracleNumber currentValue(const std::string& name) const;
    // One number for all places of a row that name the sequence. Places count from 1 in the order
    // in which a row's are asked for; 0 is any place of a statement that has only one row.
    OracleNumber rowValue(const std::string& name, int place);
    void beginStatement();

    // A rollback also undid what was noted in the file; notes it again. Before the next statement.
    void noteAgain();
    // Before ALTER: the file again knows what NEXTVAL would give, where nobody else took more.
    void giveBack(const std::string& bareName);
    // After ALTER or DROP: what was cached no longer holds.
    void forget(const std::string& bareName);

    static SequenceDefinition load(const SqliteDatabase& db, ObjectId id);
    static void save(const SqliteDatabase& db, const SequenceDefinition& sequence);

private:
    struct State {
        SequenceDefinition definition; // next: what the file has
        OracleNumber coming;           // what NEXTVAL gives next
        int left = 0;                  // of the cache
        std::optional<OracleNumber> current;
        std::optional<int> lastPlace; // of the row at hand
    };
    std::string bareName(const std::string& name) const;
    State& stateOf(const std::string& name);
    void refill(State& state, const std::string& name);

    const SqliteDatabase& m_db;
    std::string m_owner;
    std::map<std::string, State> m_states;
};

} // namespace ora
