#include "FunctionCall.h"

#include "OraError.h"
#include "RealValue.h"

#include <cmath>
#include <new>

namespace ora {

bool Call::anyNull() const {
    for (std::size_t i = 0; i < count(); ++i) {
        if (isNull(i))
            return true;
    }
    return false;
}

OracleNumber Call::number(std::size_t index) const {
    sqlite3_value* const value = m_values[index];
    switch (sqlite3_value_type(value)) {
    case SQLITE_BLOB: {
        const void* bytes = sqlite3_value_blob(value);
        return OracleNumber::fromBytes(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
    }
    case SQLITE_INTEGER: return OracleNumber(sqlite3_value_int64(value));
    case SQLITE_FLOAT: return OracleNumber::fromDouble(sqlite3_value_double(value));
    case SQLITE_NULL: return OracleNumber();
    default: break;
    }
    const auto number = OracleNumber::parse(text(index));
    if (!number)
        throw OraError(1722, "invalid number");
    return *number;
}

std::int64_t Call::integer(std::size_t index, std::int64_t otherwise) const {
    return index < count() ? integer(index) : otherwise;
}

std::string_view Call::text(std::size_t index) const {
    sqlite3_value* const value = m_values[index];
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

std::string_view Call::bytes(std::size_t index) const {
    sqlite3_value* const value = m_values[index];
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    if (!bytes)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

double Call::real(std::size_t index) const {
    return realOf(m_values[index]);
}

OracleDate Call::date(std::size_t index) const {
    const std::string_view stored = bytes(index);
    return OracleDate::fromBytes(stored.data(), stored.size());
}

YearMonthInterval Call::yearMonth(std::size_t index) const {
    const std::string_view stored = bytes(index);
    return YearMonthInterval::fromBytes(stored.data(), stored.size());
}

DaySecondInterval Call::daySecond(std::size_t index) const {
    const std::string_view stored = bytes(index);
    return DaySecondInterval::fromBytes(stored.data(), stored.size());
}

void Call::result(const OracleNumber& number) {
    sqlite3_result_blob(m_context, number.data(), static_cast<int>(number.size()),
                        SQLITE_TRANSIENT);
}

void Call::result(double value) {
    if (std::isnan(value))
        return sqlite3_result_text(m_context, NotANumber, -1, SQLITE_STATIC);
    sqlite3_result_double(m_context, value);
}

void Call::result(const OracleDate& date) {
    std::uint8_t bytes[OracleDate::MaxBytes];
    const std::size_t size = date.encode(bytes);
    sqlite3_result_blob(m_context, bytes, static_cast<int>(size), SQLITE_TRANSIENT);
}

void Call::result(const YearMonthInterval& interval) {
    resultBytes(interval.encoded());
}

void Call::result(const DaySecondInterval& interval) {
    resultBytes(interval.encoded());
}

void Call::resultText(std::string_view text) {
    if (text.empty())
        return resultNull();
    sqlite3_result_text64(m_context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Call::resultBytes(std::string_view bytes) {
    if (bytes.empty())
        return resultNull();
    sqlite3_result_blob64(m_context, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
}

namespace {

// What SQLite keeps with a function of ours.
struct Binding {
    const ScalarRow* row;
    FunctionContext* context;
};

void dispatch(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        const auto* binding = static_cast<const Binding*>(sqlite3_user_data(context));
        Call call(context, count, values);
        if (binding->row->nulls == Nulls::Propagate && call.anyNull())
            return call.resultNull();
        binding->row->body(call);
    });
}

} // namespace

FunctionContext& Call::session() const {
    return *static_cast<const Binding*>(sqlite3_user_data(m_context))->context;
}

void registerScalars(sqlite3* database, std::span<const ScalarRow> rows, FunctionContext& context) {
    for (const ScalarRow& row : rows) {
        const int stability = row.stability == Stability::Constant ? SQLITE_DETERMINISTIC : 0;
        auto binding = std::make_unique<Binding>(Binding{&row, &context});
        sqlite3_create_function_v2(database, row.name, row.arguments,
                                   SQLITE_UTF8 | SQLITE_INNOCUOUS | stability, binding.release(),
                                   dispatch, nullptr, nullptr,
                                   [](void* kept) { delete static_cast<Binding*>(kept); });
    }
}

void reportFailure(sqlite3_context* context) noexcept {
    try {
        throw;
    } catch (const OraError& error) {
        const std::string message = error.message();
        sqlite3_result_error(context, message.c_str(), static_cast<int>(message.size()));
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& error) {
        const std::string message = OraError(600, error.what()).message();
        sqlite3_result_error(context, message.c_str(), static_cast<int>(message.size()));
    }
}

} // namespace ora
