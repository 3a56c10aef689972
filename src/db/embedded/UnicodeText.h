#pragma once

#include <QString>

#include <string>
#include <string_view>

// Letters of any language, in UTF-8.
namespace ora {

QString asQString(std::string_view text);

// One character for one: a letter whose other case has several (the German sharp s) stays.
std::string upperText(std::string_view text);
std::string lowerText(std::string_view text);

std::string normalizedText(std::string_view text, QString::NormalizationForm form);
std::string withoutAccents(std::string_view text);

bool isAsciiText(std::string_view text);

} // namespace ora
