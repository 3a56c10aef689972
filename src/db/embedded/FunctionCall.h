#pragma once

#include "Functions.h"
#include "IntervalValue.h"
#include "OracleDate.h"
#include "OracleNumber.h"

#include <sqlite3.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ora {

// One call of a function by SQLite: its arguments and its result. Arguments are in the stored
// forms; views of them live as long as the call.
class Call {
public:
    Call(sqlite3_context* context, int count, sqlite3_value** values)
        : m_context(context)
        , m_values(values, static_cast<std::size_t>(count)) {}

    std::size_t count() const { return m_values.size(); }
    bool has(std::size_t index) const { return index < count() && !isNull(index); }
    bool isNull(std::size_t index) const {
        return sqlite3_value_type(m_values[index]) == SQLITE_NULL;
    }
    sqlite3_value* value(std::size_t index) const { return m_values[index]; }
    // The same call with other arguments.
    Call with(std::span<sqlite3_value*> values) const {
        Call call(*this);
        call.m_values = values;
        return call;
    }
    // The same call without its last arguments.
    Call without(std::size_t last) const {
        Call call(*this);
        call.m_values = m_values.first(count() - last);
        return call;
    }
    bool anyNull() const;

    // SQLite's own numbers and text are converted too; throws 1722 for a text that is none.
    OracleNumber number(std::size_t index) const;
    // Cut to a whole number; `otherwise` when the argument is missing.
    std::int64_t integer(std::size_t index, std::int64_t otherwise) const;
    std::int64_t integer(std::size_t index) const { return number(index).toInteger(); }
    std::string_view text(std::size_t index) const; // empty for NULL
    std::string_view bytes(std::size_t index) const;
    double real(std::size_t index) const; // a BINARY_DOUBLE, NaN included
    OracleDate date(std::size_t index) const;
    YearMonthInterval yearMonth(std::size_t index) const;
    DaySecondInterval daySecond(std::size_t index) const;

    void result(const OracleNumber& number);
    void result(const OracleDate& date);
    void result(const YearMonthInterval& interval);
    void result(const DaySecondInterval& interval);
    void result(double value);
    void resultText(std::string_view text); // the empty text is NULL
    void resultBytes(std::string_view bytes);
    void resultCondition(bool value) { sqlite3_result_int(m_context, value ? 1 : 0); }
    void resultInteger(std::int64_t value) { sqlite3_result_int64(m_context, value); }
    void resultNull() { sqlite3_result_null(m_context); }
    void resultValue(sqlite3_value* value) { sqlite3_result_value(m_context, value); }

    FunctionContext& session() const;

    // What was made of a constant argument, kept by SQLite for the statement's further rows. make
    // returns a T; it is called again when the argument is not constant.
    template<class T, class Make>
    std::shared_ptr<T> cached(std::size_t index, Make make) const;

private:
    sqlite3_context* m_context;
    std::span<sqlite3_value*> m_values;
};

template<class T, class Make>
std::shared_ptr<T> Call::cached(std::size_t index, Make make) const {
    const int slot = static_cast<int>(index);
    if (auto* kept = static_cast<std::shared_ptr<T>*>(sqlite3_get_auxdata(m_context, slot)))
        return *kept;
    auto made = std::make_shared<T>(make());
    auto keeper = std::make_unique<std::shared_ptr<T>>(made);
    sqlite3_set_auxdata(m_context, slot, keeper.release(),
                        [](void* kept) { delete static_cast<std::shared_ptr<T>*>(kept); });
    return made;
}

enum class Nulls { Propagate, Handled }; // any NULL argument gives NULL; or the body looks

enum class Stability {
    Constant, // the same arguments give the same as long as a statement runs: evaluated once
    Refused,  // the server's indexes and CHECK constraints refuse it, so SQLite must too
};

struct ScalarRow {
    const char* name;
    int arguments; // -1: any number
    void (*body)(Call&);
    Nulls nulls = Nulls::Propagate;
    Stability stability = Stability::Constant;
};

// The rows that convert between types, for what calls them in its own way.
std::span<const ScalarRow> conversionRows();
std::span<const ScalarRow> intervalRows();

void registerScalars(sqlite3* database, std::span<const ScalarRow> rows, FunctionContext& context);

// Runs the body and reports what it throws as the function's error.
template<class Body>
void guarded(sqlite3_context* context, Body body) noexcept;
void reportFailure(sqlite3_context* context) noexcept; // inside a catch

template<class Body>
void guarded(sqlite3_context* context, Body body) noexcept {
    try {
        body();
    } catch (...) {
        reportFailure(context);
    }
}

// The parts of registerFunctions().
void registerNumberFunctions(sqlite3* database, FunctionContext& context);
void registerTextFunctions(sqlite3* database, FunctionContext& context);
void registerTextShapeFunctions(sqlite3* database, FunctionContext& context);
void registerRegexpFunctions(sqlite3* database, FunctionContext& context);
void registerDateFunctions(sqlite3* database, FunctionContext& context);
void registerZoneFunctions(sqlite3* database, FunctionContext& context);
void registerIntervalFunctions(sqlite3* database, FunctionContext& context);
void registerConversionFunctions(sqlite3* database, FunctionContext& context);
void registerTolerantConversions(sqlite3* database, FunctionContext& context);
void registerColumnFunctions(sqlite3* database, FunctionContext& context);
void registerValueFunctions(sqlite3* database, FunctionContext& context);
void registerPackageFunctions(sqlite3* database, FunctionContext& context);
void registerSessionFunctions(sqlite3* database, FunctionContext& context);
void registerSumFunctions(sqlite3* database);
void registerStatisticsFunctions(sqlite3* database);
void registerListAggregates(sqlite3* database);
void registerOrderedAggregates(sqlite3* database);
void registerKeepAggregates(sqlite3* database);
void registerWindowFunctions(sqlite3* database, FunctionContext& context);

} // namespace ora
