#pragma once

#include "Provider.h"

// The embedded database: "DEMO" (created with sample data at the first connect), a file
// Databases/NAME.db under the program folder, or a path that ends in ".db".
std::unique_ptr<Provider> makeEmbeddedProvider();
