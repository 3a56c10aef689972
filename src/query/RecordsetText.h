#pragma once

#include <QByteArray>
#include <QString>

class Recordset;

struct RecordsetText {
    QByteArray text; // UTF-8
    qsizetype rows = 0;
};

// The rows as separated text: a header line and a line a row, each ending in CR LF. Blanks around
// values and around all field names but the first are dropped; nothing is quoted or escaped. Throws
// Error::InvalidUseOfNull for a null in the first column; other nulls are empty. A recordset
// without fields gives no text. Its rows are used up and give their memory back on the way.
RecordsetText recordsetText(Recordset& recordset, QStringView separator);
