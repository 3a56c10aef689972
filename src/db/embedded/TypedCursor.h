#pragma once

#include "Provider.h"
#include "SqliteDatabase.h"
#include "TypedCells.h"

#include <functional>
#include <string>

namespace ora {

struct ResultColumn {
    std::string name;
    TypeInfo type;
};

// The rows of a query of the front end. The statement was stepped once already, so that what fails
// at once has been reported.
class TypedCursor : public Cursor {
public:
    // What ends a fetch with an engine's failure, as the seam's error.
    using Failure = std::function<ProviderError(const SqliteFailure&)>;
    // Takes the statement back when the cursor goes; may be empty.
    using GiveBack = std::function<void(SqliteStatement)>;

    TypedCursor(SqliteStatement statement, bool firstRowReady,
                const std::vector<ResultColumn>& columns, Failure failure, GiveBack giveBack);
    ~TypedCursor() override;

    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore& rows, qsizetype most) override;

private:
    void appendRow(CellStore& rows);

    struct Writer {
        CellWriter write;
        TypeInfo type;
    };
    SqliteStatement m_statement;
    Failure m_failure;
    GiveBack m_giveBack;
    std::vector<Column> m_columns;
    std::vector<Writer> m_writers;
    bool m_rowReady;
};

// A statement without rows.
class EmptyCursor : public Cursor {
public:
    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore&, qsizetype) override { return 0; }

private:
    std::vector<Column> m_columns;
};

} // namespace ora
