#include "Requirements.h"

#include "ErrorText.h"
#include "NamedRow.h"
#include "SqlText.h"

namespace ora {

const CatalogColumn& requireColumn(const Relation& relation, const Name& name) {
    constexpr int InvalidIdentifier = 904;
    const CatalogColumn* const column = findNamed(relation.columns, name.text);
    if (!column)
        raiseNamed(InvalidIdentifier, displayPath(name.text), name.at.begin);
    return *column;
}

void requireCount(std::size_t columns, std::size_t values) {
    constexpr int NotEnoughValues = 947;
    constexpr int TooManyValues = 913;
    if (values != columns)
        raise(values < columns ? NotEnoughValues : TooManyValues);
}

} // namespace ora
