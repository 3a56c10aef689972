#include "Aggregate.h"
#include "OraError.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ora {

namespace {

enum class Repeats { Kept, Dropped };

// LISTAGG(value, separator, sort key [, filler, 1 when counted]); WM_CONCAT(value) separates with
// commas.
template<Repeats repeats>
class ListState {
public:
    explicit ListState(std::string separator = {})
        : m_separator(std::move(separator)) {}

    void step(Call& call) {
        if (call.isNull(0))
            return;
        m_entries.push_back(entryOf(call));
        if (call.count() > 1)
            m_separator = call.text(1);
        if (call.count() > Filler + 1) {
            m_truncates = true;
            m_filler = call.text(Filler);
            m_counted = sqlite3_value_int(call.value(Filler + 1)) != 0;
        }
        m_text.reset();
    }
    void inverse(Call& call) {
        if (call.isNull(0))
            return;
        const auto found = std::find(m_entries.begin(), m_entries.end(), entryOf(call));
        if (found != m_entries.end())
            m_entries.erase(found);
        m_text.reset();
    }
    void result(Call& call) {
        if (!m_text)
            m_text = joined();
        call.resultText(*m_text);
    }

private:
    struct Entry {
        std::string key;
        std::string text;
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    static constexpr std::size_t Filler = 3; // its place among the arguments

    static Entry entryOf(Call& call) {
        return {call.count() > 2 ? std::string(call.bytes(2)) : std::string(),
                std::string(call.text(0))};
    }

    std::string joined() {
        std::stable_sort(m_entries.begin(), m_entries.end(),
                         [](const Entry& a, const Entry& b) { return a.key < b.key; });
        if (repeats == Repeats::Dropped)
            dropRepeats();
        std::string text;
        for (const Entry& entry : m_entries) {
            if (&entry != &m_entries.front())
                text += m_separator;
            text += entry.text;
            if (text.size() > MostText)
                return m_truncates
                           ? truncated()
                           : throw OraError(1489, "result of string concatenation is too long");
        }
        return text;
    }

    void dropRepeats() {
        std::set<std::string> seen;
        std::erase_if(m_entries,
                      [&](const Entry& entry) { return !seen.insert(entry.text).second; });
    }

    // The values that leave room for the filler and the number of those left out.
    std::string truncated() const {
        constexpr std::size_t RoomForCount = 24;
        const std::size_t room =
            MostText - std::min(MostText, m_filler.size() + (m_counted ? RoomForCount : 0));
        std::string text;
        std::size_t taken = 0;
        for (const Entry& entry : m_entries) {
            if (text.size() + entry.text.size() + m_separator.size() > room)
                break;
            text += entry.text + m_separator;
            ++taken;
        }
        text += m_filler;
        if (m_counted)
            text += '(' + std::to_string(m_entries.size() - taken) + ')';
        return text;
    }

    static constexpr std::size_t MostText = 4000;

    std::vector<Entry> m_entries;
    std::string m_separator;
    std::string m_filler;
    bool m_truncates = false;
    bool m_counted = false;
    std::optional<std::string> m_text;
};

struct CommaListState : ListState<Repeats::Kept> {
    CommaListState()
        : ListState(",") {}
};

} // namespace

void registerListAggregates(sqlite3* database) {
    constexpr int AnyNumber = -1;
    Aggregate<ListState<Repeats::Kept>>::registerAs(database, "ora_listagg", AnyNumber);
    Aggregate<ListState<Repeats::Dropped>>::registerAs(database, "ora_listagg_distinct", AnyNumber);
    Aggregate<CommaListState>::registerAs(database, "ora_wm_concat", 1);
}

} // namespace ora
