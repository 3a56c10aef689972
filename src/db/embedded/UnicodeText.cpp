#include "UnicodeText.h"

#include "AsciiText.h"
#include "Utf8.h"

#include <algorithm>

namespace ora {

bool isAsciiText(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

QString asQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string upperText(std::string_view text) {
    if (isAsciiText(text))
        return upperAscii(text);
    std::string upper;
    for (std::size_t at = 0; at < text.size(); at = utf8::next(text, at))
        utf8::append(upper, QChar::toUpper(utf8::decode(text, at)));
    return upper;
}

std::string lowerText(std::string_view text) {
    return isAsciiText(text) ? lowerAscii(text) : asQString(text).toLower().toStdString();
}

std::string normalizedText(std::string_view text, QString::NormalizationForm form) {
    return asQString(text).normalized(form).toStdString();
}

std::string withoutAccents(std::string_view text) {
    QString plain = asQString(text).normalized(QString::NormalizationForm_D);
    plain.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return plain.toStdString();
}

} // namespace ora
