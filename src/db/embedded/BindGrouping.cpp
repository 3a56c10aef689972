#include "Binding.h"
#include "ErrorText.h"

namespace ora {

namespace {

using Set = std::vector<const Expr*>;
using Sets = std::vector<Set>;

constexpr std::size_t MostSets = 256;

void requireFew(std::size_t sets) {
    if (sets > MostSets)
        refuse("more than " + std::to_string(MostSets) + " grouping sets");
}

Set exprsOf(const GroupItem& item) {
    return {item.exprs.begin(), item.exprs.end()};
}

// From all parts down to none.
Sets rollupSets(std::span<const GroupItem> parts) {
    Sets sets;
    for (std::size_t count = parts.size() + 1; count-- > 0;) {
        Set set;
        for (std::size_t i = 0; i < count; ++i)
            set.insert(set.end(), parts[i].exprs.begin(), parts[i].exprs.end());
        sets.push_back(std::move(set));
    }
    return sets;
}

Sets cubeSets(std::span<const GroupItem> parts) {
    constexpr std::size_t MostParts = 8;
    if (parts.size() > MostParts)
        requireFew(MostSets + 1);
    Sets sets;
    for (std::size_t left = std::size_t(1) << parts.size(); left-- > 0;) {
        Set set;
        for (std::size_t i = 0; i < parts.size(); ++i)
            if ((left >> (parts.size() - 1 - i)) & 1)
                set.insert(set.end(), parts[i].exprs.begin(), parts[i].exprs.end());
        sets.push_back(std::move(set));
    }
    return sets;
}

Sets setsOf(const GroupItem& item) {
    switch (item.kind) {
    case GroupKind::Rollup: return rollupSets(item.items);
    case GroupKind::Cube: return cubeSets(item.items);
    case GroupKind::Simple: return {exprsOf(item)};
    case GroupKind::Sets: break;
    }
    Sets sets;
    for (const GroupItem& one : item.items)
        for (Set& set : setsOf(one))
            sets.push_back(std::move(set));
    return sets;
}

// Every set of one item with every set of the others.
Sets setsOf(std::span<const GroupItem> items) {
    Sets product{{}};
    for (const GroupItem& item : items) {
        Sets next;
        const Sets own = setsOf(item);
        requireFew(own.size() * product.size());
        for (const Set& left : product)
            for (const Set& right : own) {
                Set set = left;
                set.insert(set.end(), right.begin(), right.end());
                next.push_back(std::move(set));
            }
        product = std::move(next);
    }
    return product;
}

} // namespace

std::vector<std::vector<const Expr*>> groupingSets(std::span<const GroupItem> items) {
    return setsOf(items);
}

} // namespace ora
