#pragma once

class QFontMetrics;
class QString;

// The width of one line of text in twips. Of a text of many thousand characters the beginning is
// measured and the rest reckoned, so that a cell of megabytes costs no more than a sentence. Never
// more than a column can be wide in 32 bits.
int textWidthTwips(const QFontMetrics& metrics, const QString& text);
