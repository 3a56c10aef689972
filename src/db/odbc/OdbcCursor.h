#pragma once

#include "OdbcRows.h"

// The rows of one executed statement.
class OdbcCursor : public Cursor {
public:
    // The statement was executed; its first result with columns is taken. Throws ProviderError when
    // a result on the way there is a failure.
    OdbcCursor(std::shared_ptr<OdbcLink> link, OdbcHandle statement);

    const std::vector<Column>& columns() const override { return m_columns; }
    qsizetype fetch(CellStore& rows, qsizetype most) override;

private:
    void toFirstResultWithColumns();

    std::shared_ptr<OdbcLink> m_link;
    OdbcRows m_rows;
    std::vector<Column> m_columns;
    bool m_atEnd = false;
};
