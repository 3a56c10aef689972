#include "CatalogTables.h"
#include "DatabaseFile.h"
#include "OraError.h"
#include "Parser.h"

#include <QCoreApplication>
#include <QTemporaryFile>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

// Statements, each after a line that holds "/" alone, run in a session on a small schema in memory:
// each gives rows or a numbered error. An internal error is a fault, for the front end then wrote
// what the engine does not take.

namespace {

constexpr const char* schema[] = {
    "create table dept (id number(2) primary key, name varchar2(10), town char(6))",
    "create table emp (id number(4) primary key, name varchar2(10) not null, boss number(4) "
    "references emp, hired date default sysdate, pay number(7,2) check (pay > 0),"
    " bonus number(7,2), dept number(2) references dept)",
    "create table kinds (i integer, f binary_double, t timestamp, d interval day to second,"
    " y interval year to month, r raw(20), c clob, p char(5), v varchar2(4000))",
    "create index emp_name on emp (upper(name))",
    "create sequence seq start with 100",
    "create view v as select name n, pay * 12 s from emp where dept = 10",
    "create synonym people for emp",
    "create trigger emp_upper before insert or update on emp for each row begin"
    " :new.name := upper(:new.name); end;",
    "insert into dept select level * 10, 'DEPT' || level, chr(64 + level) from dual"
    " connect by level <= 4",
    "insert into emp select level, 'NAME' || level, nullif(trunc(level / 3), 0),"
    " date '2001-01-31' + level * 40, level * 100.5, decode(mod(level, 3), 0, level),"
    " mod(level, 4) * 10 + 10 from dual connect by level <= 12",
    "insert into kinds select level, level / 3, timestamp '2002-03-04 05:06:07.89' + level,"
    " numtodsinterval(level, 'hour'), numtoyminterval(level, 'month'), hextoraw('DEADBEEF'),"
    " 'note ' || level, chr(64 + level), rpad('x', level, 'y') from dual connect by level <= 5",
};

constexpr int InstructionsBetweenChecks = 1000;
constexpr int MostChecks = 300;
constexpr qsizetype MostRows = 50;

void check(int code) {
    if (code != SQLITE_OK)
        std::abort();
}

class Database {
public:
    Database() {
        if (!m_identity.open())
            std::abort();
        auto [db, session] = open({});
        for (const char* statement : schema)
            session->execute(QString::fromUtf8(statement));
        sqlite3_int64 size = 0;
        unsigned char* bytes = sqlite3_serialize(db, "main", &size, 0);
        m_template.assign(reinterpret_cast<char*>(bytes), std::size_t(size));
        sqlite3_free(bytes);
    }

    void run(std::string_view statement) {
        if (!m_session)
            std::tie(m_db, m_session) = open(m_template);
        m_checks = 0;
        sqlite3_progress_handler(m_db, InstructionsBetweenChecks, stopAtLast, this);
        fetch(QString::fromUtf8(statement.data(), qsizetype(statement.size())));
    }
    void forget() { m_session.reset(); }

private:
    using Opened = std::pair<sqlite3*, std::unique_ptr<Session>>;

    Opened open(const std::string& content) {
        SqliteDatabase db(":memory:", SqliteDatabase::Mode::Create);
        sqlite3* const handle = db.get();
        if (content.empty())
            ora::createCatalogTables(db);
        else
            load(handle, content);
        return {handle, openCatalogFile(std::move(db), FileIdentity(m_identity.fileName()),
                                        {{}, QStringLiteral("FUZZ"), QStringLiteral("demo"), {}})};
    }

    static void load(sqlite3* db, const std::string& content) {
        const auto size = sqlite3_int64(content.size());
        auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(content.size()));
        std::copy(content.begin(), content.end(), copy);
        check(sqlite3_deserialize(db, "main", copy, size, size,
                                  SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE));
    }

    static int stopAtLast(void* self) {
        return ++static_cast<Database*>(self)->m_checks > MostChecks;
    }

    void fetch(const QString& statement) {
        try {
            const auto cursor = m_session->execute(statement);
            CellStore rows(int(cursor->columns().size()));
            cursor->fetch(rows, MostRows);
        } catch (const ProviderError& error) {
            if (error.nativeCode() != QStringLiteral("ORA-00600"))
                return;
            std::fprintf(stderr, "%s\n", qPrintable(error.description()));
            std::abort();
        }
    }

    QTemporaryFile m_identity; // what the session watches in place of its file
    std::string m_template;
    sqlite3* m_db = nullptr;
    std::unique_ptr<Session> m_session;
    int m_checks = 0;
};

// Whether a text can be nothing but a query, which changes nothing that the next text sees.
bool isQuery(std::string_view text) {
    try {
        return ora::parseStatement(text)->statement->kind == ora::StatementKind::Query;
    } catch (const ora::OraError&) {
        return true; // refused
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int argc = 0;
    static const QCoreApplication application(argc, nullptr);
    static Database database;
    constexpr std::string_view separator = "\n/\n";
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    bool unchanged = true;
    while (!rest.empty()) {
        const std::string_view statement = rest.substr(0, rest.find(separator));
        rest.remove_prefix(std::min(rest.size(), statement.size() + separator.size()));
        unchanged = isQuery(statement) && unchanged;
        database.run(statement);
    }
    if (!unchanged)
        database.forget();
    return 0;
}

// --- changes of whole words: deeper into the front end than changed letters come ----------------

namespace {

std::vector<std::string> words(std::string_view text) {
    const auto isWord = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.';
    };
    std::vector<std::string> parts;
    while (!text.empty()) {
        std::size_t size = 1;
        if (text[0] == '\'')
            size = std::min(text.size(), text.substr(1).find('\'')) + 2;
        else
            while (isWord(text[0]) && size < text.size() && isWord(text[size]))
                ++size;
        parts.emplace_back(text.substr(0, size));
        text.remove_prefix(std::min(size, text.size()));
    }
    return parts;
}

// Runs of words of the texts that came before.
class Fragments {
public:
    void add(std::vector<std::string> fragment, std::size_t random) {
        constexpr std::size_t Most = 5000;
        if (m_fragments.size() < Most)
            m_fragments.push_back(std::move(fragment));
        else
            m_fragments[random % Most] = std::move(fragment);
    }
    const std::vector<std::string>& any(std::size_t random) const {
        return m_fragments[random % m_fragments.size()];
    }

private:
    std::vector<std::vector<std::string>> m_fragments;
};

std::string exchanged(std::string_view text, std::minstd_rand& random) {
    constexpr std::size_t LongestRun = 12;
    static Fragments fragments;
    std::vector<std::string> parts = words(text);
    if (parts.empty())
        return {};
    const auto from = std::ptrdiff_t(random() % parts.size());
    const std::ptrdiff_t most = std::ptrdiff_t(parts.size()) - from;
    const auto run = std::min(most, std::ptrdiff_t(random() % LongestRun));
    const auto begin = parts.begin() + from;
    fragments.add({begin, begin + run}, random());
    const std::vector<std::string> other = fragments.any(random());
    const bool replaces = random() % 2 == 0;
    const auto at = replaces ? parts.erase(begin, begin + run) : begin;
    parts.insert(at, other.begin(), other.end());
    std::string result;
    for (const std::string& part : parts)
        result += part;
    return result;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
    std::minstd_rand random(seed);
    constexpr int Ways = 3;
    if (random() % Ways == 0)
        return LLVMFuzzerMutate(data, size, most);
    const std::string text =
        exchanged({reinterpret_cast<const char*>(data), size}, random).substr(0, most);
    std::copy(text.begin(), text.end(), data);
    return text.size();
}
