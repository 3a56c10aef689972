#pragma once

#include <QString>

// The text with CR LF at every line end, as the editor holds it: the batch rules know no other.
QString withEditorLineEnds(const QString& text);
