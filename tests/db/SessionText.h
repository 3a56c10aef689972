#pragma once

#include "Provider.h"

#include <QStringList>

// Header and rows of a statement, one line each: a null shows as (null).
inline QString printed(Session& session, const QString& sql, qsizetype block = 1000) {
    const auto cursor = session.execute(sql);
    QStringList header;
    for (const Column& column : cursor->columns())
        header << column.name;
    QStringList lines(header.join(u'|'));
    CellStore rows(int(cursor->columns().size()));
    while (!cursor->columns().empty() && cursor->fetch(rows, block) > 0) {
    }
    for (qsizetype row = 0; row < rows.rows(); ++row) {
        QStringList cells;
        CellStore::Row walk = rows.row(row);
        for (int column = 0; column < rows.columns(); ++column) {
            const Cell cell = walk.next();
            cells << (cell.isNull ? QStringLiteral("(null)") : QString::fromUtf8(cell.view()));
        }
        lines << cells.join(u'|');
    }
    return lines.join(u'\n');
}

// "ORA-00942 -2147467259: ORA-00942: table or view does not exist"; "done" when nothing failed.
inline QString failureOf(Session& session, const QString& sql) {
    try {
        printed(session, sql);
        return QStringLiteral("done");
    } catch (const ProviderError& error) {
        return error.nativeCode() + u' ' + QString::number(error.number()) + QStringLiteral(": ") +
               error.description();
    }
}
