#pragma once

#include "DatabaseCatalog.h"

#include <string>

namespace ora {

// What the views and triggers of the catalog are made of, found by binding their texts again: what
// they say may have lost its meaning since.

// The text as JSON has it.
std::string jsonText(std::string_view text);

// False when the view's query no longer binds.
bool viewIsValid(const DatabaseCatalog& catalog, const std::string& view);

// [{"name": …, "type": …, "owner": …, "referenced": …, "kind": …}], what the dictionary keeps for
// itself left out.
std::string dependenciesJson(const DatabaseCatalog& catalog);

} // namespace ora
