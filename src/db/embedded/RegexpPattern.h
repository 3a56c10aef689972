#pragma once

#include <QRegularExpression>
#include <QString>

#include <string_view>

namespace ora {

// The server's regular expressions (POSIX with the Perl classes \d \w \s) as QRegularExpression:
// \ before another letter is that letter, a backslash in brackets is itself, $ is the very end.
// parameters: i c n m x. Throws 1760 for another parameter, 12725 to 12729 for a bad pattern.
QRegularExpression regexpPattern(std::string_view pattern, std::string_view parameters);

} // namespace ora
