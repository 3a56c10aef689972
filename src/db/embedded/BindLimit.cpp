#include "Binding.h"
#include "RowNumberLimit.h"

// ORDER BY, OFFSET and FETCH over rows that are there.
namespace ora {

namespace {

std::string limitText(Binding& binding, const RowLimit* limit) {
    if (!limit)
        return {};
    Scope none(nullptr);
    const std::string count =
        limit->count ? rowCount(binding, none, *limit->count) : std::string("-1");
    if (!limit->offset)
        return firstRows(count);
    return " LIMIT " + count + " OFFSET " + rowCount(binding, none, *limit->offset);
}

} // namespace

std::string firstRows(const std::string& count) {
    return count.empty() ? std::string() : " LIMIT " + count + " OFFSET 0";
}

bool limitsByPlace(const RowLimit* limit) {
    return limit && (limit->percent || limit->withTies);
}

void sortRows(BoundQuery& query, const std::vector<std::string>& terms) {
    query.sql =
        "SELECT " + columnList(query.columns.size(), "q") + " FROM (" + query.sql + ") AS q";
    if (!terms.empty())
        query.sql += " ORDER BY " + joined(terms, ",");
    query.ordered = !terms.empty();
    query.operand = terms.empty();
}

void limitRows(Binding& binding, BoundQuery& query, const RowLimit* limit) {
    const std::string text = limitText(binding, limit);
    if (text.empty())
        return;
    query.sql += text;
    query.limited = true;
    query.operand = false;
    query.singleRow = query.singleRow || text == firstRows("1");
}

// These need every row's place and the number of rows.
void limitByPlace(Binding& binding, BoundQuery& query, const RowLimit& limit,
                  const std::vector<std::string>& terms) {
    Scope none(nullptr);
    const std::string order = terms.empty() ? std::string() : "ORDER BY " + joined(terms, ",");
    const std::string offset = limit.offset ? rowCount(binding, none, *limit.offset) : "0";
    std::string most;
    if (limit.percent)
        most = "num_int(ora_ceil(num_div(num_mul(num_from_int(q.n)," +
               convertTo(bindValue(binding, none, *limit.count), SqlType::Number) + ")," +
               numberLiteral("100") + ")))";
    else
        most = rowCount(binding, none, *limit.count);
    const std::string place = limit.withTies ? "q.ties" : "q.place";
    query.sql = "SELECT " + columnList(query.columns.size(), "q") +
                " FROM (SELECT q.*,row_number() OVER (" + order + ") AS place,rank() OVER (" +
                order + ") AS ties,count(*) OVER () AS n FROM (" + query.sql +
                ") AS q) AS q WHERE q.place>" + offset + " AND " + place + "<=" + offset + "+" +
                most + " ORDER BY q.place";
    query.operand = false;
}

} // namespace ora
