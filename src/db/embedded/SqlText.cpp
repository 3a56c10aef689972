#include "SqlText.h"

#include "DateFormat.h"
#include "ErrorText.h"
#include "OracleNumber.h"
#include "TimeZone.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace ora {

namespace {

constexpr int InvalidNumber = 1722;
// The nearest number of single precision, with the digits of a double.
std::string singlePrecision(std::string_view digits) {
    float value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc())
        return std::string(digits);
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, static_cast<double>(value)).ptr};
}

std::string doubleLiteral(std::string_view digits) {
    const bool single = digits.back() == 'f' || digits.back() == 'F';
    digits.remove_suffix(1);
    std::string text = single ? singlePrecision(digits) : std::string(digits);
    if (text.find_first_of(".eE") == std::string::npos)
        text += ".0";
    return text;
}

} // namespace

std::string textLiteral(std::string_view text) {
    std::string quoted = "'";
    quoted.reserve(text.size() + 2);
    for (const char c : text) {
        quoted += c;
        if (c == '\'')
            quoted += c;
    }
    return quoted += '\'';
}

std::string blobLiteral(std::string_view bytes) {
    constexpr std::string_view hexadecimal = "0123456789ABCDEF";
    std::string literal = "X'";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        literal += hexadecimal[byte >> 4];
        literal += hexadecimal[byte & 15];
    }
    return literal += '\'';
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
    std::size_t size = 0;
    for (const std::string& part : parts)
        size += part.size() + separator.size();
    std::string text;
    text.reserve(size);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            text += separator;
        text += parts[i];
    }
    return text;
}

std::string call(std::string_view name, const std::vector<std::string>& arguments) {
    return std::string(name) + '(' + joined(arguments, ",") + ')';
}

std::string call(std::string_view name, const std::string& argument) {
    if (name.empty())
        return argument;
    return std::string(name) + '(' + argument + ')';
}

std::string numberFromInteger(const std::string& integer) {
    return call("num_from_int", integer);
}

std::string displayPath(std::string_view first, std::string_view second, std::string_view third) {
    std::string path;
    for (const std::string_view part : {first, second, third}) {
        if (part.empty())
            continue;
        path += path.empty() ? "\"" : ".\"";
        path += part;
        path += '"';
    }
    return path;
}

std::string numberLiteral(std::string_view digits) {
    const char last = digits.back();
    if (last == 'f' || last == 'F' || last == 'd' || last == 'D')
        return doubleLiteral(digits);
    const std::optional<OracleNumber> number = OracleNumber::parse(digits);
    if (!number)
        raise(InvalidNumber);
    return blobLiteral(number->bytes());
}

std::string storedDate(std::string_view text) {
    return blobLiteral(dateLiteral(text).encoded());
}

StoredTime storedTimestamp(std::string_view text) {
    ZoneInput zone;
    const OracleDate local = timestampLiteral(text, &zone);
    if (!zone.given())
        return {blobLiteral(local.encoded()), false};
    return {blobLiteral(ZonedTime::ofLocal(local, TimeZone::of(zone, {})).encoded()), true};
}

int characterCount(std::string_view text) {
    return static_cast<int>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

} // namespace ora
