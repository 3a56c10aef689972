#include "OracleErrors.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct OraText {
    int code;
    std::string text;
};

// Texts that are no statement, and names that exist, outside the parser's own codes.
constexpr std::array otherRejectedCodes{1408, 1430, 1740, 1741, 1742, 1756, 2260, 2261, 2264};

// Codes of the server's own parser and name resolution: 900 to 999, but for a missing table.
bool isRejectedCommand(int code) {
    constexpr int firstSyntaxCode = 900;
    constexpr int lastSyntaxCode = 999;
    if (std::binary_search(otherRejectedCodes.begin(), otherRejectedCodes.end(), code))
        return true;
    return code >= firstSyntaxCode && code <= lastSyntaxCode && code != OraCode::MissingTable;
}

// Failures below the statement: the file, the memory, a lock.
struct EngineCode {
    int primary;
    int code;
    const char* text;
};
constexpr std::array engineCodes{
    EngineCode{SQLITE_INTERRUPT, OraCode::Cancelled, "user requested cancel of current operation"},
    EngineCode{SQLITE_FULL, 1653, "unable to extend table: the disk or the database file is full"},
    EngineCode{SQLITE_READONLY, 16000, "database open for read-only access"},
    EngineCode{SQLITE_CORRUPT, 1578, "ORACLE data block corrupted: the database file is damaged"},
    EngineCode{SQLITE_NOTADB, OraCode::CannotIdentifyFile,
               "error in identifying file: it is not a database"},
    EngineCode{SQLITE_CANTOPEN, 1157, "cannot identify/lock data file"},
    EngineCode{SQLITE_IOERR, 1115, "IO error reading block from file"},
    EngineCode{SQLITE_BUSY, 54, "resource busy and acquire with NOWAIT specified"},
    EngineCode{SQLITE_LOCKED, 54, "resource busy and acquire with NOWAIT specified"},
    EngineCode{SQLITE_NOMEM, OraCode::OutOfMemory, "out of process memory"},
    EngineCode{SQLITE_TOOBIG, 1704, "string literal too long"},
    EngineCode{SQLITE_AUTH, 1031, "insufficient privileges"},
};

std::optional<OraText> engineText(int primaryCode) {
    const auto* found =
        std::find_if(engineCodes.begin(), engineCodes.end(),
                     [&](const EngineCode& entry) { return entry.primary == primaryCode; });
    if (found == engineCodes.end())
        return std::nullopt;
    return OraText{found->code, found->text};
}

std::string afterPrefix(std::string_view message, std::string_view prefix) {
    return std::string(message.substr(std::min(prefix.size(), message.size())));
}

// "T.C" as the server writes it: "T"."C".
std::string quotedPath(std::string_view path) {
    std::string quoted = "\"";
    for (const char c : path)
        quoted += c == '.' ? std::string("\".\"") : std::string(1, c);
    return quoted + '"';
}

std::optional<OraText> constraintText(int code, std::string_view message) {
    const std::string named = afterPrefix(message.substr(message.find(':') + 1), " ");
    switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID: return OraText{1, "unique constraint (" + named + ") violated"};
    case SQLITE_CONSTRAINT_CHECK: return OraText{2290, "check constraint (" + named + ") violated"};
    case SQLITE_CONSTRAINT_NOTNULL:
        return OraText{1400, "cannot insert NULL into (" + quotedPath(named) + ")"};
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        return OraText{2291, "integrity constraint violated - parent key not found or child "
                             "record found"};
    case SQLITE_CONSTRAINT_TRIGGER: return OraText{20000, std::string(message)};
    default: return std::nullopt;
    }
}

// The engine tells these apart by its text alone.
struct MessagePattern {
    std::string_view contains;
    int code;
    std::string_view text;
    bool names = false; // the name that follows ": " in the engine's text is put before ours
};
constexpr std::array messagePatterns{
    MessagePattern{"no such table", OraCode::MissingTable, "table or view does not exist"},
    MessagePattern{"no such view", OraCode::MissingTable, "table or view does not exist"},
    MessagePattern{"no such index", 1418, "specified index does not exist"},
    MessagePattern{"no such trigger", 4080, "trigger does not exist"},
    MessagePattern{"no such column", 904, ": invalid identifier", true},
    MessagePattern{"no such function", 904, ": invalid identifier", true},
    MessagePattern{"has no column named", 904, "invalid identifier"},
    MessagePattern{"ambiguous column name", 918, "column ambiguously defined"},
    MessagePattern{"duplicate column name", 957, "duplicate column name"},
    MessagePattern{"already exists", OraCode::NameInUse,
                   "name is already used by an existing object"},
    MessagePattern{"already another table or index", OraCode::NameInUse,
                   "name is already used by an existing object"},
    MessagePattern{"already a table named", OraCode::NameInUse,
                   "name is already used by an existing object"},
    MessagePattern{"already an index named", OraCode::NameInUse,
                   "name is already used by an existing object"},
    MessagePattern{"misuse of aggregate", 934, "group function is not allowed here"},
    MessagePattern{"wrong number of arguments", 909, "invalid number of arguments"},
    MessagePattern{"values were supplied", 913, "too many values"},
    MessagePattern{"values for", 947, "not enough values"},
    MessagePattern{"incomplete input", 921, "unexpected end of SQL command"},
    MessagePattern{"unrecognized token", OraCode::InvalidCharacter, "invalid character"},
    MessagePattern{"may not be modified", 1732,
                   "data manipulation operation not legal on this view"},
    MessagePattern{"parser stack overflow", 913, "statement is nested too deeply"},
};

std::string upperQuoted(std::string_view name) {
    std::string upper = "\"";
    for (const char c : name)
        upper += char(std::toupper(static_cast<unsigned char>(c)));
    return upper + '"';
}

std::optional<OraText> patternText(std::string_view message) {
    for (const MessagePattern& pattern : messagePatterns) {
        if (message.find(pattern.contains) == std::string_view::npos)
            continue;
        std::string text(pattern.text);
        if (const size_t colon = message.find(": "); pattern.names && colon != message.npos)
            text.insert(0, upperQuoted(message.substr(colon + 2)));
        return OraText{pattern.code, text};
    }
    return std::nullopt;
}

// A text whose first word is wrong is no statement; a later one ends it too early.
OraText syntaxText(const SqliteFailure& failure, std::string_view sql) {
    const size_t first = sql.find_first_not_of(" \t\r\n");
    if (first == sql.npos || failure.offset() <= int(first))
        return {OraCode::InvalidStatement, "invalid SQL statement"};
    return {933, "SQL command not properly ended"};
}

OraText describe(const SqliteFailure& failure, std::string_view sql) {
    const std::string_view message = failure.what();
    if (auto text = engineText(failure.primaryCode()))
        return *text;
    if (failure.primaryCode() == SQLITE_CONSTRAINT) {
        if (auto text = constraintText(failure.code(), message))
            return *text;
    }
    if (auto text = patternText(message))
        return *text;
    if (message.find("syntax error") != message.npos)
        return syntaxText(failure, sql);
    return {OraCode::InvalidStatement, "invalid SQL statement (" + std::string(message) + ")"};
}

bool startsWithWord(std::string_view sql, std::string_view upperWord) {
    const size_t first = sql.find_first_not_of(" \t\r\n");
    if (first == sql.npos || sql.size() - first < upperWord.size())
        return false;
    return std::equal(upperWord.begin(), upperWord.end(), sql.begin() + qsizetype(first),
                      [](char want, char have) {
                          return want == std::toupper(static_cast<unsigned char>(have));
                      });
}

// The engine has one code for both directions of a broken foreign key, and one for a null in an
// insert and an update; the statement tells which it was.
void tellByStatement(OraText& text, std::string_view sql) {
    if (text.code == 1400 && startsWithWord(sql, "UPDATE")) {
        text = {1407, "cannot update (" + text.text.substr(text.text.find('"')) + " to NULL"};
        return;
    }
    if (text.code != 2291)
        return;
    if (startsWithWord(sql, "DELETE") || startsWithWord(sql, "DROP"))
        text = {2292, "integrity constraint violated - child record found"};
    else if (startsWithWord(sql, "INSERT"))
        text.text = "integrity constraint violated - parent key not found";
}

} // namespace

ProviderError oraError(int code, std::string_view text) {
    constexpr int codeDigits = 5;
    const QString native = u"ORA-"_s + QString::number(code).rightJustified(codeDigits, u'0');
    const qint32 number =
        isRejectedCommand(code) ? DbErrorNumber::CommandRejected : DbErrorNumber::GeneralFailure;
    return ProviderError(number, native, u"Quillmate embedded database"_s,
                         native + u": "_s + QString::fromUtf8(text.data(), qsizetype(text.size())));
}

ProviderError oraError(const SqliteFailure& failure, std::string_view sql) {
    OraText text = describe(failure, sql);
    tellByStatement(text, sql);
    return oraError(text.code, text.text);
}

ProviderError oraError(const ora::OraError& error) {
    return oraError(error.code(), error.what());
}

ProviderError oraEngineError(const SqliteFailure& failure) {
    if (const auto text = engineText(failure.primaryCode()))
        return oraError(text->code, text->text);
    constexpr int featureNotEnabled = 439;
    constexpr int internalError = 600;
    const std::string message = failure.what();
    for (const std::string_view limit : {"too large", "too many", "stack overflow", "at most"}) {
        if (message.find(limit) != message.npos)
            return oraError(featureNotEnabled,
                            "feature not enabled: a statement as large as this (" + message + ")");
    }
    return oraError(internalError, "internal error code, arguments: [" + message + "]");
}
