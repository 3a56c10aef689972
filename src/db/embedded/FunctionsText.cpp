#include "FunctionCall.h"

#include "AsciiText.h"
#include "LikePattern.h"
#include "OraError.h"
#include "Utf8.h"

#include <algorithm>

namespace ora {

namespace {

// Finding and cutting: positions count characters from 1, in the ...B forms bytes.

struct Characters {
    static std::size_t length(std::string_view text) { return utf8::length(text); }
    static std::size_t offset(std::string_view text, std::size_t index) {
        return utf8::offsetOf(text, index);
    }
    static std::size_t indexOf(std::string_view text, std::size_t offset) {
        return utf8::length(text.substr(0, offset));
    }
};

struct Bytes {
    static std::size_t length(std::string_view text) { return text.size(); }
    static std::size_t offset(std::string_view text, std::size_t index) {
        return std::min(index, text.size());
    }
    static std::size_t indexOf(std::string_view, std::size_t offset) { return offset; }
};

template<class Unit>
void substr(Call& call) {
    const std::string_view text = call.text(0);
    std::int64_t start = call.integer(1);
    const auto length = static_cast<std::int64_t>(Unit::length(text));
    const std::int64_t count = call.integer(2, length);
    if (start == 0)
        start = 1;
    if (start < 0)
        start += length + 1;
    if (count < 1 || start < 1 || start > length)
        return call.resultNull();
    const std::size_t first = Unit::offset(text, static_cast<std::size_t>(start - 1));
    const std::string_view rest = text.substr(first);
    const auto wanted = static_cast<std::size_t>(std::min(count, length));
    call.resultText(rest.substr(0, Unit::offset(rest, wanted)));
}

// Byte offset of the n-th find, npos when there are fewer. Finds may overlap, as the server's do.
std::size_t findForward(std::string_view text, std::string_view part, std::size_t from,
                        std::int64_t nth) {
    std::size_t at = text.find(part, from);
    for (; at != std::string_view::npos && nth > 1; --nth)
        at = text.find(part, at + 1);
    return at;
}

std::size_t findBackward(std::string_view text, std::string_view part, std::size_t from,
                         std::int64_t nth) {
    std::size_t at = text.rfind(part, from);
    for (; at != std::string_view::npos && nth > 1; --nth) {
        if (at == 0)
            return std::string_view::npos;
        at = text.rfind(part, at - 1);
    }
    return at;
}

[[noreturn]] void throwRange(std::int64_t argument) {
    throw OraError(1428, "argument '" + std::to_string(argument) + "' is out of range");
}

template<class Unit>
void instr(Call& call) {
    const std::string_view text = call.text(0);
    const std::string_view part = call.text(1);
    const std::int64_t start = call.integer(2, 1);
    const std::int64_t nth = call.integer(3, 1);
    if (nth < 1)
        throwRange(nth);
    std::size_t found = std::string_view::npos;
    if (start > 0) {
        const std::size_t from = Unit::offset(text, static_cast<std::size_t>(start - 1));
        if (from < text.size())
            found = findForward(text, part, from, nth);
    } else if (start < 0) {
        const auto length = static_cast<std::int64_t>(Unit::length(text));
        if (length + start >= 0)
            found = findBackward(text, part,
                                 Unit::offset(text, static_cast<std::size_t>(length + start)), nth);
    }
    const std::size_t position =
        found == std::string_view::npos ? 0 : Unit::indexOf(text, found) + 1;
    call.result(OracleNumber(static_cast<std::int64_t>(position)));
}

void length(Call& call) {
    call.result(OracleNumber(static_cast<std::int64_t>(utf8::length(call.text(0)))));
}

void lengthBytes(Call& call) {
    call.result(OracleNumber(static_cast<std::int64_t>(call.text(0).size())));
}

// Of CLOBs: as long as it gets.
void concatLarge(Call& call) {
    std::string joined;
    for (std::size_t i = 0; i < call.count(); ++i) {
        if (!call.isNull(i))
            joined += call.text(i);
    }
    call.resultText(joined);
}

void concat(Call& call) {
    constexpr std::size_t MostText = 4000;
    std::size_t size = 0;
    for (std::size_t i = 0; i < call.count(); ++i)
        size += call.text(i).size();
    if (size > MostText)
        throw OraError(1489, "result of string concatenation is too long");
    concatLarge(call);
}

// The first character's bytes as one number, as in the server's UTF-8 character set.
void ascii(Call& call) {
    const std::string_view text = call.text(0);
    std::int64_t value = 0;
    for (const char c : text.substr(0, utf8::next(text, 0)))
        value = value * 256 + static_cast<unsigned char>(c);
    call.result(OracleNumber(value));
}

bool isUnicode(std::int64_t codePoint) {
    return codePoint >= 0 && codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
}

std::string charOf(std::int64_t codePoint) {
    std::string text;
    utf8::append(text, static_cast<char32_t>(codePoint));
    return text;
}

// The reverse of ASCII. A number that is no UTF-8 sequence is taken as a code point.
void chr(Call& call) {
    const std::int64_t number = call.integer(0);
    if (number < 0 || number > 0xFFFFFFFF)
        throwRange(number);
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<char>(number >> shift & 0xFF);
        if (byte != '\0' || !bytes.empty() || shift == 0)
            bytes += byte;
    }
    const bool sequence = utf8::length(bytes) == 1 && !utf8::isContinuation(bytes.front()) &&
                          utf8::decode(bytes, 0) != 0xFFFD;
    if (!sequence && isUnicode(number))
        bytes = charOf(number);
    call.resultText(bytes);
}

void nchr(Call& call) {
    const std::int64_t number = call.integer(0);
    if (!isUnicode(number))
        throwRange(number);
    call.resultText(charOf(number));
}

constexpr std::string_view hexDigits = "0123456789ABCDEF";

// "\00E9" for every character past ASCII, in UTF-16 units.
void asciistr(Call& call) {
    const std::string_view text = call.text(0);
    std::string result;
    const auto escape = [&](char32_t unit) {
        result += '\\';
        for (int shift = 12; shift >= 0; shift -= 4)
            result += hexDigits[unit >> shift & 0xF];
    };
    for (std::size_t at = 0; at < text.size(); at = utf8::next(text, at)) {
        const char32_t c = utf8::decode(text, at);
        if (c < 0x80 && c != U'\\') {
            result += static_cast<char>(c);
        } else if (c < 0x10000) {
            escape(c);
        } else {
            escape(0xD800 + ((c - 0x10000) >> 10));
            escape(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    call.resultText(result);
}

// Four hexadecimal digits at `at`; -1 when there are none.
int hexUnit(std::string_view text, std::size_t at) {
    constexpr std::size_t Digits = 4;
    if (at + Digits > text.size())
        return -1;
    int value = 0;
    for (const char c : text.substr(at, Digits)) {
        const auto digit = hexDigits.find(upperAscii(c));
        if (digit == std::string_view::npos)
            return -1;
        value = value * 16 + static_cast<int>(digit);
    }
    return value;
}

void unistr(Call& call) {
    const std::string_view text = call.text(0);
    std::string result;
    char32_t high = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '\\') {
            result += text[at++];
            continue;
        }
        if (at + 1 < text.size() && text[at + 1] == '\\') {
            result += '\\';
            at += 2;
            continue;
        }
        const int unit = hexUnit(text, at + 1);
        if (unit < 0)
            throw OraError(30186,
                           "'\\' must be followed by four hexdecimal characters or another '\\'");
        at += 5;
        if (unit >= 0xD800 && unit < 0xDC00)
            high = static_cast<char32_t>(unit);
        else if (unit >= 0xDC00 && unit < 0xE000)
            utf8::append(result, 0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FF));
        else
            utf8::append(result, static_cast<char32_t>(unit));
    }
    call.resultText(result);
}

// Fullwidth forms of ASCII lie this far above it.
constexpr char32_t FullwidthShift = 0xFEE0;
constexpr char32_t IdeographicSpace = 0x3000;

void toMultiByte(Call& call) {
    std::string result;
    for (const char c : call.text(0)) {
        if (c == ' ')
            utf8::append(result, IdeographicSpace);
        else if (c > ' ' && c < 0x7F)
            utf8::append(result, static_cast<char32_t>(c) + FullwidthShift);
        else
            result += c;
    }
    call.resultText(result);
}

void toSingleByte(Call& call) {
    const std::string_view text = call.text(0);
    std::string result;
    for (std::size_t at = 0; at < text.size(); at = utf8::next(text, at)) {
        const char32_t c = utf8::decode(text, at);
        if (c == IdeographicSpace)
            result += ' ';
        else if (c > FullwidthShift + U' ' && c < FullwidthShift + 0x7F)
            result += static_cast<char>(c - FullwidthShift);
        else
            result += text.substr(at, utf8::next(text, at) - at);
    }
    call.resultText(result);
}

// LIKE; a pattern without an escape character is kept between rows.
void like(Call& call) {
    if (call.count() > 2)
        return call.resultCondition(LikePattern(call.text(1), call.text(2)).matches(call.text(0)));
    const auto pattern = call.cached<LikePattern>(1, [&] { return LikePattern(call.text(1)); });
    call.resultCondition(pattern->matches(call.text(0)));
}

constexpr ScalarRow rows[] = {
    {"text_concat", -1, concat, Nulls::Handled},
    {"clob_concat", -1, concatLarge, Nulls::Handled},
    {"text_like", -1, like},
    {"ora_ascii", 1, ascii},
    {"ora_asciistr", 1, asciistr},
    {"ora_chr", 1, chr},
    {"ora_nchr", 1, nchr},
    {"ora_unistr", 1, unistr},
    {"ora_instr", -1, instr<Characters>},
    {"ora_instrb", -1, instr<Bytes>},
    {"ora_length", 1, length},
    {"ora_lengthb", 1, lengthBytes},
    {"ora_substr", -1, substr<Characters>},
    {"ora_substrb", -1, substr<Bytes>},
    {"ora_to_multi_byte", 1, toMultiByte},
    {"ora_to_single_byte", 1, toSingleByte},
};

} // namespace

void registerTextFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
