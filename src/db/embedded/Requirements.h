#pragma once

#include "Catalog.h"
#include "Tree.h"

#include <cstddef>

namespace ora {

// Throws 904 for a column that the relation does not have.
const CatalogColumn& requireColumn(const Relation& relation, const Name& name);

// Throws 947 or 913 unless there is one value for each column.
void requireCount(std::size_t columns, std::size_t values);

} // namespace ora
