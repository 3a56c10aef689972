#include "FunctionCall.h"

#include "AsciiText.h"
#include "NlsParameters.h"
#include "OraError.h"
#include "SortOrder.h"
#include "UnicodeText.h"
#include "Utf8.h"

#include <QChar>

#include <algorithm>
#include <vector>

namespace ora {

namespace {

// Changing texts: case, padding, trimming, replacing.

// One character for one: a letter whose other case has several (the German sharp s) stays.
char32_t upperOf(char32_t c) {
    return c < 0x80 ? static_cast<char32_t>(upperAscii(static_cast<char>(c))) : QChar::toUpper(c);
}

char32_t lowerOf(char32_t c) {
    return c < 0x80 ? static_cast<char32_t>(lowerAscii(static_cast<char>(c))) : QChar::toLower(c);
}

template<class Map>
std::string mapped(std::string_view text, Map map) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); at = utf8::next(text, at))
        utf8::append(result, map(utf8::decode(text, at)));
    return result;
}

void upper(Call& call) {
    call.resultText(mapped(call.text(0), upperOf));
}

void lower(Call& call) {
    call.resultText(mapped(call.text(0), lowerOf));
}

void initcap(Call& call) {
    bool inWord = false;
    call.resultText(mapped(call.text(0), [&](char32_t c) {
        const char32_t result = inWord ? lowerOf(c) : upperOf(c);
        inWord = QChar::isLetterOrNumber(c);
        return result;
    }));
}

// The second argument: "NLS_SORT = GERMAN_CI". Indexes and CHECKs of older files have none.
std::shared_ptr<const SortOrder> sortOrder(Call& call) {
    if (call.count() < 2)
        return SortOrder::find("BINARY");
    return *call.cached<std::shared_ptr<const SortOrder>>(1, [&] {
        std::string_view parameters = trimmedAscii(call.text(1));
        const auto [name, value] = takeNlsParameter(parameters);
        auto order = name == "NLS_SORT" ? SortOrder::find(value) : nullptr;
        if (!order)
            throwNlsParameters();
        return order;
    });
}

// Languages whose letters change case in pairs: NLS_SORT = XGERMAN makes a sharp s two letters.
void nlsUpper(Call& call) {
    constexpr std::string_view SharpS = "ß";
    std::string text = mapped(call.text(0), upperOf);
    const bool german = sortOrder(call)->name() == "XGERMAN";
    for (std::size_t at = 0; german && (at = text.find(SharpS, at)) != std::string::npos;)
        text.replace(at, SharpS.size(), "SS");
    call.resultText(text);
}

// NLS_SORT = XDUTCH takes ij for one letter.
void nlsInitcap(Call& call) {
    const bool dutch = sortOrder(call)->name() == "XDUTCH";
    char32_t first = 0; // the letter that a word began with just before
    bool inWord = false;
    call.resultText(mapped(call.text(0), [&](char32_t c) {
        const bool pair = dutch && first == U'I' && lowerOf(c) == U'j';
        const char32_t result = inWord && !pair ? lowerOf(c) : upperOf(c);
        first = inWord ? 0 : result;
        inWord = QChar::isLetterOrNumber(c);
        return result;
    }));
}

void nlsLower(Call& call) {
    sortOrder(call);
    lower(call);
}

void reverse(Call& call) {
    const std::string_view text = call.text(0);
    std::string result;
    for (std::size_t end = text.size(); end > 0;) {
        std::size_t first = end - 1;
        while (first > 0 && utf8::isContinuation(text[first]))
            --first;
        result += text.substr(first, end - first);
        end = first;
    }
    call.resultText(result);
}

constexpr std::int64_t MostText = 32767; // the longest VARCHAR2 anywhere

// `count` characters of the padding, over and over.
std::string padding(std::string_view pad, std::size_t count) {
    const std::size_t length = utf8::length(pad);
    std::string result;
    if (length == 0)
        return result;
    for (; count >= length; count -= length)
        result += pad;
    return result += pad.substr(0, utf8::offsetOf(pad, count));
}

enum class Side { Left, Right };

template<Side side>
void pad(Call& call) {
    const std::string_view text = call.text(0);
    const std::int64_t width = std::min(call.integer(1), MostText);
    const std::string_view with = call.count() > 2 ? call.text(2) : " ";
    if (width <= 0)
        return call.resultNull();
    const auto wanted = static_cast<std::size_t>(width);
    const std::size_t length = utf8::length(text);
    if (length >= wanted)
        return call.resultText(text.substr(0, utf8::offsetOf(text, wanted)));
    std::string fill = padding(with, wanted - length);
    call.resultText(side == Side::Left ? fill.append(text) : std::string(text) + fill);
}

bool containsCharacter(std::string_view set, std::string_view character) {
    for (std::size_t at = 0; at < set.size();) {
        const std::size_t end = utf8::next(set, at);
        if (set.substr(at, end - at) == character)
            return true;
        at = end;
    }
    return false;
}

std::string_view trimmedLeft(std::string_view text, std::string_view set) {
    while (!text.empty()) {
        const std::size_t size = utf8::next(text, 0);
        if (!containsCharacter(set, text.substr(0, size)))
            break;
        text.remove_prefix(size);
    }
    return text;
}

std::string_view trimmedRight(std::string_view text, std::string_view set) {
    while (!text.empty()) {
        std::size_t first = text.size() - 1;
        while (first > 0 && utf8::isContinuation(text[first]))
            --first;
        if (!containsCharacter(set, text.substr(first)))
            break;
        text.remove_suffix(text.size() - first);
    }
    return text;
}

std::string_view trimSet(Call& call) {
    return call.count() > 1 ? call.text(1) : " ";
}

void ltrim(Call& call) {
    call.resultText(trimmedLeft(call.text(0), trimSet(call)));
}

void rtrim(Call& call) {
    call.resultText(trimmedRight(call.text(0), trimSet(call)));
}

// TRIM's forms: the character and the side are the second and third argument.
void trim(Call& call) {
    const std::string_view set = trimSet(call);
    if (utf8::length(set) != 1)
        throw OraError(30001, "trim set should have only one character");
    const std::string_view side = call.count() > 2 ? call.text(2) : "B";
    std::string_view text = call.text(0);
    if (side != "T")
        text = trimmedLeft(text, set);
    if (side != "L")
        text = trimmedRight(text, set);
    call.resultText(text);
}

void replace(Call& call) {
    const std::string_view text = call.text(0);
    const std::string_view part = call.has(1) ? call.text(1) : std::string_view();
    const std::string_view with = call.has(2) ? call.text(2) : std::string_view();
    if (part.empty())
        return call.resultText(text);
    std::string result;
    std::size_t at = 0;
    for (;;) {
        const std::size_t found = text.find(part, at);
        result += text.substr(at, found - at);
        if (found == std::string_view::npos)
            break;
        result += with;
        at = found + part.size();
    }
    call.resultText(result);
}

std::vector<std::string_view> characters(std::string_view text) {
    std::vector<std::string_view> result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = utf8::next(text, at);
        result.push_back(text.substr(at, end - at));
        at = end;
    }
    return result;
}

// Characters of the second text become those at the same place in the third, or vanish.
void translate(Call& call) {
    const auto from = characters(call.text(1));
    const auto to = characters(call.text(2));
    std::string result;
    for (const std::string_view c : characters(call.text(0))) {
        const auto found = std::find(from.begin(), from.end(), c);
        const auto index = static_cast<std::size_t>(found - from.begin());
        if (found == from.end())
            result += c;
        else if (index < to.size())
            result += to[index];
    }
    call.resultText(result);
}

char soundexCode(char letter) {
    constexpr std::string_view codes = "01230120022455012623010202"; // A to Z
    return codes[static_cast<std::size_t>(letter - 'A')];
}

void soundex(Call& call) {
    constexpr std::size_t Size = 4;
    std::string result;
    char last = '0';
    for (const char c : call.text(0)) {
        if (!isAsciiLetter(c))
            continue;
        const char letter = upperAscii(c);
        const char code = soundexCode(letter);
        if (result.empty())
            result += letter;
        else if (code != '0' && code != last)
            result += code;
        // H and W do not part two letters of one sound.
        if (letter != 'H' && letter != 'W')
            last = code;
        if (result.size() == Size)
            break;
    }
    if (!result.empty())
        result.resize(Size, '0');
    call.resultText(result);
}

void nlssort(Call& call) {
    call.resultBytes(sortOrder(call)->key(call.text(0)) + '\0');
}

void likeForm(Call& call) {
    call.resultText(sortOrder(call)->folded(call.text(0)));
}

void compose(Call& call) {
    call.resultText(normalizedText(call.text(0), QString::NormalizationForm_C));
}

void decompose(Call& call) {
    const bool compatible = call.count() > 1 && upperAscii(call.text(1)) == "COMPATIBILITY";
    call.resultText(normalizedText(call.text(0), compatible ? QString::NormalizationForm_KD
                                                            : QString::NormalizationForm_D));
}

// The letter under an acute, grave, circumflex or diaeresis; the character set's table has no
// other.
char asciiOf(char32_t character) {
    constexpr std::u16string_view marks = u"\u0300\u0301\u0302\u0308";
    const QString parts = QString::fromUcs4(&character, 1).normalized(QString::NormalizationForm_D);
    const bool known = parts.size() == 2 && parts[0].unicode() < 0x80 &&
                       marks.find(parts[1].unicode()) != std::u16string_view::npos;
    return known ? parts[0].toLatin1() : '?';
}

// CONVERT(text, to [, from]): texts are Unicode whatever the names say, so that only a set without
// their letters changes them.
void convert(Call& call) {
    const std::string_view text = call.text(0);
    if (upperAscii(call.text(1)) != "US7ASCII" || isAsciiText(text))
        return call.resultValue(call.value(0));
    std::string ascii;
    for (std::size_t at = 0; at < text.size(); at = utf8::next(text, at)) {
        const char32_t character = utf8::decode(text, at);
        ascii += character < 0x80 ? static_cast<char>(character) : asciiOf(character);
    }
    call.resultText(ascii);
}

constexpr ScalarRow rows[] = {
    {"ora_upper", -1, upper},
    {"ora_lower", -1, lower},
    {"ora_initcap", -1, initcap},
    {"ora_nls_upper", -1, nlsUpper},
    {"ora_nls_lower", -1, nlsLower},
    {"ora_nls_initcap", -1, nlsInitcap},
    {"ora_reverse", 1, reverse},
    {"ora_lpad", -1, pad<Side::Left>},
    {"ora_rpad", -1, pad<Side::Right>},
    {"ora_ltrim", -1, ltrim},
    {"ora_rtrim", -1, rtrim},
    {"ora_trim", -1, trim},
    {"ora_replace", -1, [](Call& c) { c.isNull(0) ? c.resultNull() : replace(c); }, Nulls::Handled},
    {"ora_translate", 3, translate},
    {"ora_soundex", 1, soundex},
    {"ora_nlssort", -1, nlssort},
    {"text_like_form", 2, likeForm},
    {"ora_compose", 1, compose},
    {"ora_decompose", -1, decompose},
    {"ora_convert", -1, convert},
};

} // namespace

void registerTextShapeFunctions(sqlite3* database, FunctionContext& context) {
    registerScalars(database, rows, context);
}

} // namespace ora
