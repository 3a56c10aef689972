#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class CellStore;

// Values of the engine as cell texts, written straight into the store.

void appendInteger(CellStore& rows, std::int64_t value);
// The shortest digits that read back as the same value, without exponent; whole ones without point.
void appendReal(CellStore& rows, double value);
// Bytes that are not UTF-8 become U+FFFD.
void appendText(CellStore& rows, std::string_view text);
// A date text: midnight is not shown, nor trailing zeros of a fraction. Other texts stay.
void appendDateText(CellStore& rows, std::string_view text);
// Upper-case hexadecimal.
void appendBinary(CellStore& rows, std::string_view bytes);
