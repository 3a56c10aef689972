#pragma once

#include "DateLanguage.h"
#include "NumberFormat.h"

#include <string>
#include <string_view>
#include <utility>

// The last argument of conversion functions: "NLS_DATE_LANGUAGE = French".
namespace ora {

// The next NAME = 'VALUE' (the quotes may be absent), the name in upper case; the text moves behind
// it. Throws 12702.
std::pair<std::string, std::string> takeNlsParameter(std::string_view& text);

[[noreturn]] void throwNlsParameters(); // 12702

// The locale with what the parameters say. Throws 12702.
DateLocale withDateParameters(DateLocale locale, std::string_view parameters);

} // namespace ora
