#include "QueryFunctions.h"

#include "ErrorText.h"

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace ora {

namespace {

constexpr int SingleRow = 1427;
constexpr int InvalidRowid = 1410;
constexpr int ConnectByLoop = 1436;

void fail(sqlite3_context* context, int code) {
    sqlite3_result_error(context, OraError(code, errorText(code)).message().c_str(), -1);
}

std::string_view bytesOf(sqlite3_value* value) {
    const void* const bytes = sqlite3_value_blob(value);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

// ---- ora_single ----

struct OnlyValue {
    sqlite3_value* value;
    bool seen;
};

void singleStep(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto* const only =
        static_cast<OnlyValue*>(sqlite3_aggregate_context(context, sizeof(OnlyValue)));
    if (!only)
        return sqlite3_result_error_nomem(context);
    if (only->seen)
        return fail(context, SingleRow);
    only->seen = true;
    only->value = sqlite3_value_dup(arguments[0]);
}

void singleFinal(sqlite3_context* context) {
    auto* const only = static_cast<OnlyValue*>(sqlite3_aggregate_context(context, 0));
    if (!only || !only->value)
        return sqlite3_result_null(context);
    sqlite3_result_value(context, only->value);
    sqlite3_value_free(only->value);
    only->value = nullptr;
}

// ---- ROWID ----

constexpr std::string_view rowidLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int BitsPerLetter = 6;
constexpr std::size_t RowidLength = 18;
constexpr std::size_t RowidDigits = 11; // 66 bits
constexpr std::string_view rowidStart = "AAAAAAA";

void rowidText(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    auto number = static_cast<std::uint64_t>(sqlite3_value_int64(arguments[0]));
    std::string text(rowidStart);
    text.resize(RowidLength, 'A');
    for (std::size_t i = RowidLength; i > RowidLength - RowidDigits; --i) {
        text[i - 1] = rowidLetters[number % rowidLetters.size()];
        number >>= BitsPerLetter;
    }
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

void rowidNumber(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    const std::string_view text = bytesOf(arguments[0]);
    if (text.size() != RowidLength)
        return fail(context, InvalidRowid);
    std::uint64_t number = 0;
    for (const char letter : text.substr(RowidLength - RowidDigits)) {
        const std::size_t digit = rowidLetters.find(letter);
        if (digit == std::string_view::npos)
            return fail(context, InvalidRowid);
        number = (number << BitsPerLetter) | digit;
    }
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(number));
}

// ---- connect_loop ----

// The keys from the root down to the row whose children are being looked for.
class Ancestors {
public:
    void descend(std::size_t level, std::string_view key) {
        while (m_path.size() >= level) {
            m_keys.erase(m_path.back());
            m_path.pop_back();
        }
        m_path.emplace_back(key);
        m_keys.insert(m_path.back());
    }

    bool contains(std::size_t level, std::string_view key) const {
        return m_path.size() == level && m_keys.contains(std::string(key));
    }

    bool isAt(std::size_t level, std::string_view key) const {
        return m_path.size() == level && m_path.back() == key;
    }

private:
    std::vector<std::string> m_path;
    std::unordered_set<std::string> m_keys;
};

// The path lives with the statement, on the function's first argument, which is constant.
Ancestors* ancestorsOf(sqlite3_context* context) {
    void* const known = sqlite3_get_auxdata(context, 0);
    if (known)
        return static_cast<Ancestors*>(known);
    auto made = std::make_unique<Ancestors>();
    sqlite3_set_auxdata(context, 0, made.release(),
                        [](void* ancestors) { delete static_cast<Ancestors*>(ancestors); });
    return static_cast<Ancestors*>(sqlite3_get_auxdata(context, 0));
}

void connectLoop(sqlite3_context* context, int, sqlite3_value** arguments) {
    Ancestors* const ancestors = ancestorsOf(context);
    if (!ancestors)
        return sqlite3_result_error_nomem(context);
    const auto level = static_cast<std::size_t>(sqlite3_value_int64(arguments[1]));
    const std::string_view parent = bytesOf(arguments[2]);
    if (!ancestors->isAt(level, parent))
        ancestors->descend(level, parent);
    const bool isNull = sqlite3_value_type(arguments[3]) == SQLITE_NULL;
    const bool loops = !isNull && ancestors->contains(level, bytesOf(arguments[3]));
    if (loops && sqlite3_value_int(arguments[4]) == 0)
        return fail(context, ConnectByLoop);
    sqlite3_result_int(context, loops ? 1 : 0);
}

// SYS_CONNECT_BY_PATH's next part: the separator, then the value, which must not contain it.
void pathStep(sqlite3_context* context, int, sqlite3_value** arguments) {
    constexpr int NoSeparator = 30003;
    constexpr int SeparatorInside = 30004;
    const std::string_view separator = bytesOf(arguments[0]);
    const std::string_view value = bytesOf(arguments[1]);
    if (separator.empty())
        return fail(context, NoSeparator);
    if (value.find(separator) != std::string_view::npos)
        return fail(context, SeparatorInside);
    const std::string part = std::string(separator) + std::string(value);
    sqlite3_result_text64(context, part.data(), part.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void raiseError(sqlite3_context* context, int, sqlite3_value** arguments) {
    const OraError error(sqlite3_value_int(arguments[0]), std::string(bytesOf(arguments[1])));
    sqlite3_result_error(context, error.message().c_str(), -1);
}

// RAISE_APPLICATION_ERROR in line n of a trigger: the number, the text, the trigger, n.
void raiseFrom(sqlite3_context* context, int, sqlite3_value** arguments) {
    constexpr int First = -20999;
    constexpr int Last = -20000;
    constexpr int OutOfRange = 21000;
    const int number = sqlite3_value_int(arguments[0]);
    const std::string trigger(bytesOf(arguments[2]));
    const bool known = number >= First && number <= Last;
    const OraError error(known ? -number : OutOfRange,
                         (known ? std::string(bytesOf(arguments[1]))
                                : "error number argument to raise_application_error of " +
                                      std::to_string(number) + " is out of range") +
                             "\nORA-06512: at \"" + trigger + "\", line " +
                             std::string(bytesOf(arguments[3])) +
                             "\nORA-04088: error during execution of trigger '" + trigger + '\'');
    sqlite3_result_error(context, error.message().c_str(), -1);
}

struct ScalarRow {
    const char* name;
    int arguments;
    bool constant; // the same arguments always give the same result
    void (*function)(sqlite3_context*, int, sqlite3_value**);
};

constexpr ScalarRow scalars[] = {
    {"rowid_text", 1, true, rowidText},      {"rowid_number", 1, true, rowidNumber},
    {"connect_loop", 5, false, connectLoop}, {"path_step", 2, true, pathStep},
    {"ora_raise", 2, false, raiseError},     {"ora_raise_from", 4, false, raiseFrom},
};

} // namespace

void registerQueryFunctions(sqlite3* database) {
    for (const ScalarRow& row : scalars)
        sqlite3_create_function_v2(database, row.name, row.arguments,
                                   SQLITE_UTF8 | (row.constant ? SQLITE_DETERMINISTIC : 0), nullptr,
                                   row.function, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(database, "ora_single", 1, SQLITE_UTF8, nullptr, nullptr, singleStep,
                               singleFinal, nullptr);
}

} // namespace ora
