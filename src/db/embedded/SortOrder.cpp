#include "SortOrder.h"

#include "AsciiText.h"
#include "NamedRow.h"
#include "UnicodeText.h"
#include "Utf8.h"

#include <algorithm>

namespace ora {

namespace {

// A language's letters that come after another one ("<") or count as it but for the accent ("=").
// In the names with X a pair of letters may be one.
struct Alphabet {
    std::string_view name;
    std::string_view letters;
};

constexpr std::string_view scandinavian = "z<æ=ä<ø=ö<å";
constexpr std::string_view nordic = "z<å<ä=æ<ö=ø";
constexpr std::string_view turkish = "c<ç g<ğ h<ı=I o<ö s<ş u<ü";
constexpr std::string_view czech = "c<č h<ch r<ř s<š z<ž";
constexpr std::string_view slovak = "a<ä c<č h<ch o<ô s<š z<ž";
constexpr std::string_view slovenian = "c<č<ć d<đ s<š z<ž";

constexpr Alphabet alphabets[] = {
    {"ARABIC", ""},
    {"BULGARIAN", ""},
    {"CANADIAN FRENCH", ""},
    {"CATALAN", ""},
    {"CROATIAN", "c<č<ć d<đ s<š z<ž"},
    {"CZECH", czech},
    {"DANISH", scandinavian},
    {"DUTCH", ""},
    {"EEC_EURO", ""},
    {"ESTONIAN", "s<š<z<ž w<õ<ä<ö<ü"},
    {"FINNISH", nordic},
    {"FRENCH", ""},
    {"GENERIC", ""},
    {"GERMAN", ""},
    {"GERMAN_DIN", "a<ä o<ö u<ü"},
    {"GREEK", ""},
    {"HEBREW", ""},
    {"HUNGARIAN", "o<ö=ő u<ü=ű"},
    {"ICELANDIC", "a<á d<ð e<é i<í o<ó u<ú y<ý z<þ<æ<ö=ø<å"},
    {"INDONESIAN", ""},
    {"ITALIAN", ""},
    {"JAPANESE", ""},
    {"KOREAN", ""},
    {"LATIN", ""},
    {"LATVIAN", "c<č g<ģ k<ķ l<ļ n<ņ s<š z<ž"},
    {"LITHUANIAN", "c<č s<š z<ž"},
    {"MALAY", ""},
    {"NORWEGIAN", scandinavian},
    {"POLISH", "a<ą c<ć e<ę l<ł n<ń o<ó s<ś z<ź<ż"},
    {"PUNCTUATION", ""},
    {"ROMANIAN", "a<ă<â i<î s<ș=ş t<ț=ţ"},
    {"RUSSIAN", ""},
    {"SCHINESE_PINYIN", ""},
    {"SCHINESE_RADICAL", ""},
    {"SCHINESE_STROKE", ""},
    {"SLOVAK", slovak},
    {"SLOVENIAN", slovenian},
    {"SPANISH", "n<ñ"},
    {"SWEDISH", nordic},
    {"SWISS", ""},
    {"TCHINESE_RADICAL", ""},
    {"TCHINESE_STROKE", ""},
    {"THAI", ""},
    {"TURKISH", turkish},
    {"UKRAINIAN", ""},
    {"VIETNAMESE", "a<ă<â d<đ e<ê o<ô<ơ u<ư"},
    {"WEST_EUROPEAN", ""},
    {"XCATALAN", "l<ll"},
    {"XCROATIAN", "c<č<ć d<dž<đ l<lj n<nj s<š z<ž"},
    {"XCZECH", czech},
    {"XDANISH", "z<æ=ä<ø=ö<å=aa"},
    {"XDUTCH", "y=ij"},
    {"XFRENCH", ""},
    {"XGERMAN", ""},
    {"XGERMAN_DIN", "a<ä o<ö u<ü"},
    {"XHUNGARIAN", "c<cs d<dz<dzs g<gy l<ly n<ny o<ö=ő s<sz t<ty u<ü=ű z<zs"},
    {"XPUNCTUATION", ""},
    {"XSLOVAK", slovak},
    {"XSLOVENIAN", slovenian},
    {"XSPANISH", "c<ch l<ll n<ñ"},
    {"XSWISS", ""},
    {"XTURKISH", turkish},
    {"XWEST_EUROPEAN", ""},
};

// Letters that Unicode does not take apart.
constexpr std::pair<std::string_view, std::string_view> spelledOut[] = {
    {"ß", "ss"}, {"æ", "ae"}, {"œ", "oe"}, {"ø", "o"}, {"đ", "d"},
    {"ł", "l"},  {"ð", "d"},  {"þ", "th"}, {"ı", "i"},
};

constexpr char firstRank = '\1';

// Symbols, digits, letters, in this order; each letter with its rank among those of its base.
void appendMajor(std::string& major, std::string_view base, char rank) {
    for (std::size_t at = 0; at < base.size();) {
        const std::size_t end = utf8::next(base, at);
        const char32_t c = utf8::decode(base, at);
        major += QChar::isLetter(c) ? '\3' : QChar::isDigit(c) ? '\2' : '\1';
        major += base.substr(at, end - at);
        major += rank;
        at = end;
    }
}

// Of a letter with its accent taken off; acute, grave and the others are told apart.
char accentOf(std::string_view character) {
    constexpr char16_t firstMark = 0x300;
    constexpr int mostMarks = 0x70;
    constexpr char other = '\x7E';
    const QString parts = asQString(character).normalized(QString::NormalizationForm_D);
    const int mark = parts.size() > 1 ? parts[1].unicode() - firstMark : -1;
    return mark >= 0 && mark < mostMarks ? static_cast<char>(mark + 2) : other;
}

bool takeSuffix(std::string_view& name, std::string_view suffix) {
    if (!name.ends_with(suffix))
        return false;
    name.remove_suffix(suffix.size());
    return true;
}

} // namespace

std::shared_ptr<const SortOrder> SortOrder::find(std::string_view name) {
    const std::string upper = upperAscii(trimmedAscii(name));
    std::string_view rest = upper;
    const Case caseRule = takeSuffix(rest, "_AI")   ? Case::IgnoredWithAccents
                          : takeSuffix(rest, "_CI") ? Case::Ignored
                                                    : Case::Counts;
    const auto make = [&](Letters letters, Case rule, std::string_view alphabet) {
        return std::shared_ptr<const SortOrder>(new SortOrder(upper, letters, rule, alphabet));
    };
    if (rest == "BINARY" || rest == "UNICODE_BINARY")
        return make(Letters::Bytes, caseRule, {});
    if (rest == "GENERIC_BASELETTER")
        return make(Letters::Multi, Case::IgnoredWithAccents, {});
    if (rest == "FRENCH_M" || rest == "CANADIAN_M")
        return make(Letters::MultiBackwards, caseRule, {});
    const bool multi = takeSuffix(rest, "_M");
    const Alphabet* const alphabet = findNamed(alphabets, rest);
    if (!alphabet || (rest == "GENERIC" && !multi))
        return nullptr;
    return make(multi ? Letters::Multi : Letters::Single, caseRule, alphabet->letters);
}

SortOrder::SortOrder(std::string name, Letters letters, Case caseRule, std::string_view alphabet)
    : m_name(std::move(name))
    , m_letters(letters)
    , m_case(caseRule) {
    readAlphabet(alphabet);
}

void SortOrder::readAlphabet(std::string_view alphabet) {
    std::string_view base;
    char rank = firstRank;
    char accent = noAccent;
    for (std::size_t at = 0; at < alphabet.size();) {
        const char sign = alphabet[at];
        if (sign == '<' || sign == '=' || sign == ' ')
            ++at;
        const std::size_t end = std::min(alphabet.find_first_of("<= ", at), alphabet.size());
        const std::string_view letter = alphabet.substr(at, end - at);
        at = end;
        if (sign != '<' && sign != '=') {
            base = letter;
            rank = firstRank;
            accent = noAccent;
            continue;
        }
        rank = sign == '<' ? static_cast<char>(rank + 1) : rank;
        accent = sign == '<' ? noAccent : static_cast<char>(accent + 1);
        Place place;
        appendMajor(place.major, base, rank);
        place.accent = accent;
        m_own.emplace(letter, place);
        m_longest = std::max(m_longest, letter.size());
    }
}

SortOrder::Place SortOrder::plainPlace(std::string_view character) {
    Place place;
    if (isAsciiText(character)) {
        appendMajor(place.major, character, firstRank);
        return place;
    }
    const auto spelled = std::find_if(std::begin(spelledOut), std::end(spelledOut),
                                      [&](const auto& row) { return row.first == character; });
    const std::string base =
        spelled != std::end(spelledOut) ? std::string(spelled->second) : withoutAccents(character);
    appendMajor(place.major, base.empty() ? character : base, firstRank);
    if (base != character)
        place.accent = accentOf(character);
    return place;
}

// Null when the language has no letter of its own there; else the bytes that it takes.
const SortOrder::Place* SortOrder::ownPlace(std::string_view text, std::size_t& size) const {
    for (std::size_t length = std::min(m_longest, text.size()); length > 0; --length) {
        const std::string_view piece = text.substr(0, length);
        auto own = m_own.find(std::string(piece));
        if (own == m_own.end())
            own = m_own.find(lowerText(piece));
        if (own == m_own.end())
            continue;
        size = length;
        return &own->second;
    }
    return nullptr;
}

SortOrder::Place SortOrder::placeAt(std::string_view text, std::size_t at,
                                    std::size_t& size) const {
    size = utf8::next(text, at) - at;
    const std::string_view character = text.substr(at, size);
    const std::string lower = lowerText(character);
    const Place* const own = ownPlace(text.substr(at), size);
    Place place = own ? *own : plainPlace(lower);
    place.upper = lower != character;
    return place;
}

std::string SortOrder::languageKey(std::string_view text) const {
    std::string majors;
    std::string accents;
    std::string cases;
    for (std::size_t at = 0, size = 0; at < text.size(); at += size) {
        const Place place = placeAt(text, at, size);
        majors += place.major;
        accents += place.accent;
        cases += place.upper ? '\2' : '\1';
    }
    if (m_case == Case::IgnoredWithAccents)
        return majors;
    if (m_letters == Letters::MultiBackwards)
        std::reverse(accents.begin(), accents.end());
    if (m_case == Case::Ignored)
        return majors + '\0' + accents;
    if (m_letters != Letters::Single)
        return majors + '\0' + accents + '\0' + cases;
    std::string both;
    for (std::size_t i = 0; i < accents.size(); ++i)
        both += {accents[i], cases[i]};
    return majors + '\0' + both;
}

std::string SortOrder::folded(std::string_view text) const {
    switch (m_case) {
    case Case::Ignored: return lowerText(text);
    case Case::IgnoredWithAccents: return withoutAccents(lowerText(text));
    default: return std::string(text);
    }
}

std::string SortOrder::key(std::string_view text) const {
    return m_letters == Letters::Bytes ? folded(text) : languageKey(text);
}

} // namespace ora
