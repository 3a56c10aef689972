#include "Recordset.h"

#include "Command.h"
#include "Connection.h"

namespace {

// ADO's own numbers.
constexpr qint32 noCurrentRecord = 3021;
constexpr qint32 noSuchItem = 3265;

Error atEndError() {
    return Error(
        noCurrentRecord, QStringLiteral("Quillmate.Recordset"),
        QStringLiteral("Either BOF or EOF is True, or the current record has been deleted; "
                       "the operation requested by the application requires a current "
                       "record."));
}

} // namespace

void Recordset::Open(const Command& command) {
    m_columns.clear();
    m_rows = CellStore();
    m_current = 0;
    if (!command.ActiveConnection)
        throw Error(Error::ObjectNotSet, QStringLiteral("Quillmate.Recordset"),
                    QStringLiteral("Object variable not set"));
    FetchedRows fetched = command.ActiveConnection->fetch(command.CommandText, MaxRecords);
    m_columns = std::move(fetched.columns);
    m_rows = std::move(fetched.rows);
}

std::optional<qsizetype> Recordset::fieldIndex(QStringView name) const {
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (name.compare(m_columns[i].name, Qt::CaseInsensitive) == 0)
            return qsizetype(i);
    }
    return std::nullopt;
}

void Recordset::MoveNext() {
    if (atEof())
        throw atEndError();
    m_rows.releaseBefore(++m_current);
}

Cell Recordset::value(qsizetype field) const {
    if (atEof())
        throw atEndError();
    return m_rows.cell(m_current, int(field));
}

QString Recordset::text(QStringView field) const {
    const auto index = fieldIndex(field);
    if (!index)
        throw Error(noSuchItem, QStringLiteral("Quillmate.Recordset"),
                    QStringLiteral("Item cannot be found in the collection corresponding to the "
                                   "requested name or ordinal: %1")
                        .arg(field));
    return QString::fromUtf8(value(*index).view());
}

CellStore Recordset::takeRows() {
    if (m_current == 0)
        return std::move(m_rows);
    CellStore rest(int(m_columns.size()));
    for (; !atEof(); MoveNext()) {
        CellStore::Row row = currentRow();
        for (size_t i = 0; i < m_columns.size(); ++i) {
            const Cell cell = row.next();
            cell.isNull ? rest.appendNull() : rest.append(cell.data, cell.size);
        }
        rest.endRow();
    }
    return rest;
}
