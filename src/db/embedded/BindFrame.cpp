#include "Binding.h"
#include "ErrorText.h"
#include "FrameRows.h"
#include "WindowText.h"

#include <optional>

// The rows of OVER: PARTITION BY, ORDER BY, and ROWS or RANGE. The engine takes distances only
// written out and only in rows; FrameRows finds every other frame.
namespace ora {

namespace {

constexpr int InvalidDatatype = 902;

// A place on the line that RANGE measures on: exact, and without a calendar's ends.
struct Place {
    Value value;
    bool ofMonths = false;
};

Value typedValue(std::string sql, SqlType type) {
    Value value;
    value.sql = std::move(sql);
    value.type = {type};
    return value;
}

Place placeOf(const Value& key, bool months) {
    switch (familyOf(key.type.type)) {
    case TypeFamily::Number:
    case TypeFamily::Binary: return {key};
    case TypeFamily::Date:
    case TypeFamily::Timestamp: break;
    default: raise(InvalidDatatype);
    }
    if (months)
        return {typedValue(call("date_months", key.sql), SqlType::BinaryDouble), true};
    return {typedValue(call("ts_sub", {key.sql, storedDate("0001-01-01")}),
                       SqlType::IntervalDayToSecond)};
}

Value lengthOn(const Place& place, const Value& distance, long position) {
    const bool months = distance.type.type == SqlType::IntervalYearToMonth;
    if (months != place.ofMonths)
        refuse("months and days in one window", position);
    if (months)
        return typedValue(call("ym_reach", distance.sql), SqlType::BinaryDouble);
    if (distance.type.type == SqlType::IntervalDayToSecond)
        return typedValue(call("ds_reach", distance.sql), SqlType::IntervalDayToSecond);
    const std::string number = call("num_reach", convertTo(distance, SqlType::Number));
    if (place.value.type.type != SqlType::IntervalDayToSecond)
        return typedValue(number, SqlType::Number);
    return typedValue(call("ora_numtodsinterval", {number, "'DAY'"}), SqlType::IntervalDayToSecond);
}

class FrameBinder {
public:
    FrameBinder(Binding& binding, Scope& scope, const Window& window)
        : m_binding(binding)
        , m_scope(scope)
        , m_window(window)
        , m_frame(*window.frame) {}

    void bind(WindowText& text) {
        requireRightWayRound();
        bindDistance(m_frame.startOffset, m_start);
        bindDistance(m_frame.endOffset, m_end);
        if (m_frame.rows)
            bindRows(text);
        else if (m_frame.startOffset || m_frame.endOffset)
            bindRange(text);
        else
            text.frame = frameText(boundWords(m_frame.start), boundWords(m_frame.end));
    }

private:
    static constexpr int InvalidGroup = 30486;
    static constexpr const char* FromHere = "ROWS BETWEEN CURRENT ROW AND UNBOUNDED FOLLOWING";

    void requireRightWayRound() const {
        if (m_frame.start > m_frame.end || m_frame.start == FrameBound::UnboundedFollowing ||
            m_frame.end == FrameBound::UnboundedPreceding)
            raise(InvalidGroup);
    }

    void bindDistance(const Expr* offset, Value& distance) {
        if (offset)
            distance = bindValue(m_binding, m_scope, *offset);
    }

    std::string frameText(const std::string& start, const std::string& end) const {
        return std::string(m_frame.rows ? "ROWS" : "RANGE") + " BETWEEN " + start + " AND " + end;
    }

    static std::string boundWords(FrameBound bound) {
        switch (bound) {
        case FrameBound::UnboundedPreceding: return "UNBOUNDED PRECEDING";
        case FrameBound::Preceding: return " PRECEDING";
        case FrameBound::CurrentRow: return "CURRENT ROW";
        case FrameBound::Following: return " FOLLOWING";
        case FrameBound::UnboundedFollowing: break;
        }
        return "UNBOUNDED FOLLOWING";
    }

    // ---- ROWS ----

    static std::string rowCount(const Value& distance) {
        return call("num_distance", convertTo(distance, SqlType::Number));
    }

    static bool isConstant(const Expr& offset) {
        std::vector<const ColumnRef*> columns;
        collectColumns(&offset, columns);
        return columns.empty() && !hasSubquery(&offset);
    }

    // Nothing where it may differ from row to row, or is null.
    std::optional<std::string> writtenOut(FrameBound bound, const Expr* offset,
                                          const Value& distance) const {
        if (!offset)
            return boundWords(bound);
        if (!isConstant(*offset))
            return std::nullopt;
        const std::optional<double> rows = m_binding.catalog.constant(rowCount(distance));
        if (!rows)
            return std::nullopt;
        return std::to_string(static_cast<std::int64_t>(*rows)) + boundWords(bound);
    }

    static std::string rowsAway(FrameBound bound, const Value& distance) {
        switch (bound) {
        case FrameBound::UnboundedPreceding: return FrameRows::AllBefore;
        case FrameBound::Preceding: return '-' + rowCount(distance);
        case FrameBound::CurrentRow: return "0";
        case FrameBound::Following: return rowCount(distance);
        case FrameBound::UnboundedFollowing: break;
        }
        return FrameRows::AllBehind;
    }

    void bindRows(WindowText& text) {
        const auto start = writtenOut(m_frame.start, m_frame.startOffset, m_start);
        const auto end = writtenOut(m_frame.end, m_frame.endOffset, m_end);
        if (start && end) {
            text.frame = frameText(*start, *end);
            return;
        }
        text.bounds = {"NULL", rowsAway(m_frame.start, m_start), rowsAway(m_frame.end, m_end)};
        text.frame = FromHere;
    }

    // ---- RANGE ----

    std::string sortedBy(const std::string& sql) const {
        const char letter = orderLetter(m_window.order[0], false);
        return call("sort_key", {textLiteral({&letter, 1}), sql});
    }

    std::string boundKey(const Place& place, FrameBound bound, const Expr* offset,
                         const Value& distance) const {
        if (bound == FrameBound::CurrentRow)
            return sortedBy(place.value.sql);
        if (!offset)
            return "NULL";
        const bool adds = (bound == FrameBound::Following) != m_window.order[0].descending;
        const Value length = lengthOn(place, distance, offset->at.begin);
        return sortedBy(arithmetic(adds ? '+' : '-', place.value, length).sql);
    }

    void bindRange(WindowText& text) {
        if (m_window.order.size() != 1)
            raise(InvalidGroup);
        const Value key = bindValue(m_binding, m_scope, *m_window.order[0].expr);
        const Place place = placeOf(key, m_start.type.type == SqlType::IntervalYearToMonth ||
                                             m_end.type.type == SqlType::IntervalYearToMonth);
        text.bounds = {sortedBy(place.value.sql),
                       boundKey(place, m_frame.start, m_frame.startOffset, m_start),
                       boundKey(place, m_frame.end, m_frame.endOffset, m_end)};
        text.order = "ORDER BY " + text.bounds[0];
        text.frame = FromHere;
    }

    Binding& m_binding;
    Scope& m_scope;
    const Window& m_window;
    const WindowFrame& m_frame;
    Value m_start;
    Value m_end;
};

std::string orderText(Binding& binding, Scope& scope, std::span<const OrderItem> items) {
    std::vector<std::string> terms;
    for (const OrderItem& item : items) {
        const Value value = bindValue(binding, scope, *item.expr);
        terms.push_back(orderTerm(sortedBy(binding, value), value.nullable, item));
    }
    return terms.empty() ? std::string() : "ORDER BY " + joined(terms, ",");
}

} // namespace

std::string WindowText::with(const std::string& sorted, const std::string& framed) const {
    std::string text = partition;
    for (const std::string& part : {sorted, framed})
        if (!part.empty())
            text += (text.empty() ? "" : " ") + part;
    return text;
}

std::string WindowText::call(const std::string& name, std::vector<std::string> arguments) const {
    if (bounds.empty())
        return ora::call(name, arguments) + over();
    if (!arguments.empty() && arguments[0] == "*")
        arguments.clear();
    arguments.insert(arguments.end(), bounds.begin(), bounds.end());
    return ora::call(name + "_frame", arguments) + over();
}

WindowText windowText(Binding& binding, Scope& scope, const Window& window) {
    WindowText text;
    if (!window.partition.empty()) {
        std::vector<std::string> keys;
        for (const Value& value : bindValues(binding, scope, window.partition))
            keys.push_back(value.sql);
        text.partition = "PARTITION BY " + joined(keys, ",");
    }
    text.order = orderText(binding, scope, window.order);
    if (window.frame)
        FrameBinder(binding, scope, window).bind(text);
    return text;
}

} // namespace ora
