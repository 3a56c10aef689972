#pragma once

#include "OraError.h"
#include "Provider.h"
#include "SqliteDatabase.h"

#include <string>
#include <string_view>

// The server's codes that this back-end raises itself, outside the texts of the engine.
namespace OraCode {
constexpr int NameInUse = 955;
constexpr int MissingTable = 942;
constexpr int InvalidStatement = 900;
constexpr int InvalidCharacter = 911;
constexpr int Cancelled = 1013;
constexpr int WrongLogin = 1017;
constexpr int CannotIdentifyFile = 1565;
constexpr int CannotCreateDatabase = 1501;
constexpr int ConnectionLost = 3113;
constexpr int NotConnected = 3114;
constexpr int OutOfMemory = 4030;
constexpr int NotImplemented = 3001;
} // namespace OraCode

// "ORA-00942: " + text under the number that callers test for. text is UTF-8.
ProviderError oraError(int code, std::string_view text);

ProviderError oraError(const ora::OraError& error);

// What the engine reported below the front end: the file, the memory, a lock, a limit.
ProviderError oraEngineError(const SqliteFailure& failure);

// What the engine reported for the statement, in the server's words.
ProviderError oraError(const SqliteFailure& failure, std::string_view sql);
