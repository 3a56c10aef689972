#include "DateFormat.h"
#include "DateUnits.h"
#include "IntervalValue.h"
#include "OraError.h"

#include <cstdlib>
#include <string_view>

// "model \n text": any model is read or refused and prints; any text is read as a date that the
// calendar has, or refused; the text is also tried as literals, units and intervals.

namespace {

template<class Action>
void attempt(Action action) {
    try {
        action();
    } catch (const ora::OraError&) {
    }
}

void check(const ora::OracleDate& date) {
    const std::string bytes = date.encoded();
    const bool sound = ora::isCalendarDay(date.year, date.month, date.day) && date.hour < 24 &&
                       date.minute < 60 && date.second < 60 && date.nanosecond >= 0 &&
                       ora::OracleDate::fromBytes(bytes.data(), bytes.size()) == date;
    if (!sound)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto end = input.find('\n');
    const std::string_view model = input.substr(0, end);
    const std::string_view text =
        end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
    static const ora::OracleDate now = ora::timestampLiteral("2026-11-21 14:05:09.123456");
    attempt([&] {
        const auto format = ora::DateFormat::parse(model);
        (void)format.toText(now);
        check(format.toDate(text, now));
    });
    attempt([&] { check(ora::timestampLiteral(text)); });
    attempt([&] { check(ora::dateLiteral(text)); });
    attempt([&] { check(ora::roundedTo(now, model)); });
    attempt([&] { check(ora::truncatedTo(ora::timestampLiteral(text), model)); });
    attempt([&] { (void)ora::DaySecondInterval::parse(text).encoded(); });
    attempt([&] { (void)ora::YearMonthInterval::parse(text).encoded(); });
    attempt([&] {
        check(ora::OracleDate::fromBytes(data, size).midnight());
        check(now + ora::DaySecondInterval::fromBytes(data, size));
    });
    return 0;
}
