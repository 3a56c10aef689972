#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ora {

// The order of texts that a name of NLS_SORT stands for. What the languages tell apart, and that
// lower case comes first, follows the rules that the server's globalization guide gives; its own
// tables are not public, so that symbols and scripts without a case sort by code point.
class SortOrder {
public:
    // In any case. Null: there is no such name.
    static std::shared_ptr<const SortOrder> find(std::string_view name);

    const std::string& name() const { return m_name; }

    // Bytes whose memcmp is the order of the texts; equal for texts that the order takes for equal.
    std::string key(std::string_view text) const;
    // What LIKE looks at: as it is, or without case, or without case and accents.
    std::string folded(std::string_view text) const;

private:
    enum class Letters {
        Bytes,          // by their code points
        Single,         // by their letters, and then accent and case of each
        Multi,          // by their letters, then all accents, then all cases
        MultiBackwards, // accents from the end
    };
    enum class Case { Counts, Ignored, IgnoredWithAccents };
    static constexpr char noAccent = '\1';
    // What sorts before what: first `major`, then `accent`, then `upper`.
    struct Place {
        std::string major;
        char accent = noAccent;
        bool upper = false;
    };

    SortOrder(std::string name, Letters letters, Case caseRule, std::string_view alphabet);
    void readAlphabet(std::string_view alphabet);
    const Place* ownPlace(std::string_view text, std::size_t& size) const;
    // The place of what stands at `at`, and the bytes it takes.
    Place placeAt(std::string_view text, std::size_t at, std::size_t& size) const;
    static Place plainPlace(std::string_view character);
    std::string languageKey(std::string_view text) const;

    std::string m_name;
    Letters m_letters;
    Case m_case;
    std::unordered_map<std::string, Place> m_own; // letters, also pairs, in lower case
    std::size_t m_longest = 0;                    // of those, in bytes
};

} // namespace ora
