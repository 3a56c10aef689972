#pragma once

#include "Types.h"

#include <string>
#include <string_view>
#include <vector>

// Pieces of the engine's SQL as text. Nothing here knows what a name means.
namespace ora {

// 'it''s'
std::string textLiteral(std::string_view text);
// X'C102'
std::string blobLiteral(std::string_view bytes);

std::string joined(const std::vector<std::string>& parts, std::string_view separator);

// name(a, b)
std::string call(std::string_view name, const std::vector<std::string>& arguments);
std::string call(std::string_view name, const std::string& argument);

// NUMBER around a value of the engine's own integers.
std::string numberFromInteger(const std::string& integer);

// "T"."C" as the server's messages show a path of names.
std::string displayPath(std::string_view first, std::string_view second = {},
                        std::string_view third = {});

// The stored bytes of literals; throw the server's errors for texts that are none.
std::string numberLiteral(std::string_view digits); // also BINARY_DOUBLE ones with f or d
std::string storedDate(std::string_view text);
struct StoredTime {
    std::string sql;
    bool zoned; // a TIMESTAMP WITH TIME ZONE
};
StoredTime storedTimestamp(std::string_view text);

// Characters of a UTF-8 text.
int characterCount(std::string_view text);

} // namespace ora
