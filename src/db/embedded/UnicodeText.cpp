#include "UnicodeText.h"

#include "AsciiText.h"

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
    return isAsciiText(text) ? upperAscii(text) : asQString(text).toUpper().toStdString();
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
