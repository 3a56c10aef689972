#pragma once

#include "TextEncoding.h"

// The text of a query file, between the file and the editor. A file ends in the line end that
// saving puts behind the text; the text itself has it not, so that a text comes back as it was
// saved however often it is.

// Larger files are not opened: the editor would take long and much memory for them, while the
// console program runs them at once. Bytes.
constexpr qint64 largestQueryFile = 32'000'000;

struct QueryText {
    QString text; // line ends as they stand in the file
    TextEncoding encoding = encodingOfNewFiles();
    QString problem; // why there is no text; empty when there is one
};

QueryText readQueryText(const QString& path);

// Replaces the file whole with the text and CR LF. Gives the encoding that it took, which is UTF-8
// where a character does not fit the wanted one. Throws Error; the old file is then as it was.
TextEncoding writeQueryText(const QString& path, const QString& text, TextEncoding wanted);
