#pragma once

#include "CellStore.h"

#include <QByteArray>
#include <QList>

// Rows of texts for a grid; a null QByteArray is a null.
inline CellStore gridRows(const QList<QList<QByteArray>>& rows) {
    CellStore store(rows.isEmpty() ? 0 : int(rows.first().size()));
    for (const QList<QByteArray>& row : rows) {
        for (const QByteArray& cell : row) {
            if (cell.isNull())
                store.appendNull();
            else
                store.append(cell.constData(), cell.size());
        }
        store.endRow();
    }
    return store;
}

// Rows whose cells are all the row's number from 0.
inline CellStore numberedRows(qsizetype rows, int columns) {
    CellStore store(columns);
    for (qsizetype row = 0; row < rows; ++row) {
        const QByteArray text = QByteArray::number(row);
        for (int column = 0; column < columns; ++column)
            store.append(text.constData(), text.size());
        store.endRow();
    }
    return store;
}
