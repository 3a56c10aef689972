#pragma once

#include "OraError.h"

namespace ora {

// The server's sentence for a number that takes no names; "" for an unlisted one.
const char* errorText(int code);

// Throws the number with its listed sentence.
[[noreturn]] void raise(int code, long position = -1);

// ORA-00904 and its like: `names` is put before the sentence as the server does, "EMP"."SALL".
[[noreturn]] void raiseNamed(int code, const std::string& names, long position = -1);

// ORA-12081: a table that ALTER TABLE made READ ONLY.
[[noreturn]] void failReadOnly(const std::string& owner, const std::string& table);

// What the server can do and this program cannot: a plain sentence under the number that the server
// uses for a feature that an edition lacks.
[[noreturn]] void refuse(const std::string& feature, long position = -1);

} // namespace ora
