#pragma once

#include <QStringList>

// Joins lines that together are shorter than the width, unless one of them begins a FROM or WHERE
// clause; then begins a line of its own with each "from " and "where " inside a line, wherever the
// letters stand. Ignores case.
void breakAtClauses(QStringList& lines, qint32 width);
