#pragma once

#include "Types.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

// Which functions and operators there are, what they take and return, and what SQLite knows them
// by. The binder asks here; registerFunctions() (Functions.h) provides the SQLite names.
namespace ora {

enum class FunctionKind : std::uint8_t {
    Scalar,
    Aggregate,           // never with OVER
    AggregateOrAnalytic, // both; DISTINCT allowed with exactly one argument
    Analytic,            // only with OVER
};

// What the emitter hands over. Conversions are conversionFunction()'s.
enum class Parameter : std::uint8_t {
    None,
    Number,
    Text,
    Date, // DATE or TIMESTAMP as it is: both have one form
    PlainDate,
    Timestamp,
    Zoned,
    YearMonth,
    DaySecond,
    Raw,
    Double,
    Any,         // as it is
    SameAsFirst, // converted to the type of the first argument that is not the literal NULL
    Integer,     // a NUMBER handed over as SQLite integer: num_int() around it
    Condition,   // a truth value
};

enum class ResultRule : std::uint8_t {
    Number,
    Text,
    Date,
    Timestamp,
    Zoned,
    YearMonth,
    DaySecond,
    Raw,
    Clob,
    Rowid,
    Float,
    Double,
    SameAsFirst,   // the type of the first argument that is not the literal NULL
    SameAsSecond,  // NVL2, and KEEP-like forms
    NativeInteger, // SQLite's own integer: the emitter wraps it into num_from_int()
    NativeReal,    // SQLite's own real number: the emitter wraps it into num_from_real()
    Condition,     // stands where a condition stands
};

// Forms that the emitter writes itself, because their grammar or their order of evaluation is not a
// function call's. sqliteName then is the helper named here, or empty.
enum class SpecialForm : std::uint8_t {
    None,
    Decode,          // CASE with IS comparison
    Nvl2,            // CASE WHEN first IS NOT NULL
    Lnnvl,           // (condition) IS NOT TRUE
    Cast,            // CAST(x AS type)
    Extract,         // EXTRACT(field FROM x): sqliteName(x, 'FIELD')
    Trim,            // TRIM([LEADING|TRAILING|BOTH] [c] FROM x): sqliteName(x, c, 'L'|'T'|'B')
    Count,           // COUNT(*) and COUNT(x)
    Grouping,        // GROUPING(x), GROUPING_ID(...), GROUP_ID(): known while emitting
    Listagg,         // sqliteName(value, separator, sort_key(...)); _distinct variant for DISTINCT
    Percentile,      // sqliteName(x, fraction, 0 or 1 for DESC) WITHIN GROUP (ORDER BY x)
    RankWithin,      // sqliteName(sort_key(ORDER BY of the row), sort_key(the arguments))
    PercentRank,     // (rank() - 1) / (count(*) of the partition - 1), 0 for a single row
    CumeDist,        // count(*) up to the peers / count(*) of the partition
    RatioToReport,   // x / num_sum(x) of the partition
    Lag,             // native lag/lead(x, num_int(offset), default); with IGNORE NULLS:
    Lead,            //   nth_last_not_null / nth_not_null(x, offset) over the rows before / after
    FirstValue,      // native; with IGNORE NULLS nth_not_null(x, 1) over the same frame
    LastValue,       // native; with IGNORE NULLS nth_last_not_null(x, 1) over the same frame
    NthValue,        // native nth_value(x, num_int(n)); FROM LAST nth_last
    SessionConstant, // a word without parentheses: USER, SYSDATE …
    TimestampText,   // the digits of the fraction stand behind the model and the parameters
    DigitsText,      // converted as convertTo() does: with the type's digits
    SortOrder,       // the session's NLS_SORT where the call gives none
    TypedCall, // each argument is preceded by its SqlType as an integer: DUMP, VSIZE, ORA_HASH
};

struct FunctionEntry {
    static constexpr int AnyNumber = -1;
    static constexpr std::size_t ParameterSlots = 7;

    const char* name; // upper case, the server's
    int minArguments;
    int maxArguments; // AnyNumber: the last parameter repeats
    std::array<Parameter, ParameterSlots> parameters;
    ResultRule result;
    FunctionKind kind;
    const char* sqliteName;
    SpecialForm form = SpecialForm::None;

    // Past the written parameters the last one repeats.
    Parameter parameter(std::size_t index) const;
    bool accepts(std::size_t count) const;
};

// All overloads of a name in order of preference; empty when there is no such function.
std::span<const FunctionEntry> functionsNamed(std::string_view upperName);

// The overload for these argument types: the first that fits without conversion, else the first
// that fits with one. Null for an unknown name (ORA-00904 is the caller's, who knows the spelling).
// Throws ORA-00909, 00938, 00939 for a wrong count and ORA-00932 when no conversion fits.
const FunctionEntry* findFunction(std::string_view upperName, std::span<const SqlType> arguments);

// True for names that are called without parentheses: SYSDATE, USER …
bool isSessionConstant(std::string_view upperName);

// The SQLite function that converts; "" when the stored form is the same already, null when the
// server has no implicit conversion (ORA-00932). Takes one argument.
const char* conversionFunction(SqlType from, SqlType to);

// The type a parameter asks for; `given` for Any, SameAsFirst and the like.
SqlType typeOfParameter(Parameter parameter, SqlType given);

// A binary operator over two static types. The emitter writes
// sqliteName(convert(left), convert(right)), with the operands swapped when `swapped`.
struct OperatorChoice {
    const char* sqliteName;
    SqlType left;  // convert the written left operand to this
    SqlType right; // and the right one to this
    SqlType result;
    bool swapped;
};

// symbol: one of + - * /. Throws ORA-00932, ORA-00975 (date + date), ORA-30081 (intervals).
OperatorChoice findOperator(char symbol, SqlType left, SqlType right);

// Unary minus: the SQLite function, throws ORA-00932.
OperatorChoice findNegation(SqlType operand);

} // namespace ora
