#pragma once

#include <QByteArrayView>
#include <QString>

// The text of a script file: UTF-8, or UTF-16 with its mark; else Windows-1252, which older
// programs wrote. A byte order mark is dropped.
QString decodeScript(QByteArrayView bytes);

// The text with CR LF at every line end, as the editor holds it: the batch rules know no other.
QString withEditorLineEnds(const QString& text);
