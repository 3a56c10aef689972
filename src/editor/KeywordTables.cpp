#include "KeywordTables.h"

#include <span>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t blueSlots = 41;
constexpr size_t greenSlots = 6;
constexpr size_t redSlots = 11;

constexpr QStringView blueWords[] = {
    u"SELECT",  u"FROM",    u"WHERE",  u"INSERT", u"UPDATE", u"INTO",     u"DELETE", u"VALUES",
    u"ORDER",   u"GROUP",   u"HAVING", u"ASC",    u"DESC",   u"DISTINCT", u"AS",     u"ALL",
    u"TOP",     u"PERCENT", u"WITH",   u"TIES",   u"BY",     u"FOR",      u"NULL",   u"SET",
    u"DEFAULT", u"INNER",   u"JOIN",   u"LEFT",   u"RIGHT",  u"FULL",     u"OUTER",  u"IN"};
constexpr QStringView greenWords[] = {u"CREATE", u"DROP", u"REPLACE"};
constexpr QStringView redWords[] = {u"TABLE",   u"VIEW",    u"COLUMN", u"INDEX",
                                    u"PACKAGE", u"SYNONYM", u"TRIGGER"};

KeywordTable filledTable(SqlColour colour, size_t slots, std::span<const QStringView> words) {
    KeywordTable table{colour, std::vector<KeywordSlot>(slots)};
    for (size_t i = 0; i < words.size(); ++i) {
        const QString capitals = words[i].toString();
        const QString small = capitals.toLower();
        table.words[i] = {capitals + u' ', {capitals, small, capitals.left(1) + small.mid(1), {}}};
    }
    return table;
}

} // namespace

const std::array<KeywordTable, 3>& keywordTables() {
    static const std::array<KeywordTable, 3> tables = {
        filledTable(SqlColour::Blue, blueSlots, blueWords),
        filledTable(SqlColour::Green, greenSlots, greenWords),
        filledTable(SqlColour::Red, redSlots, redWords)};
    return tables;
}

const std::array<QString, 7>& operatorTexts() {
    static const std::array<QString, 7> texts = {u"AND "_s, u"OR "_s, u"NOT "_s, u"LIKE "_s,
                                                 u">"_s,    u"<"_s,   u"="_s};
    return texts;
}
