#pragma once

#include "Provider.h"

// The back-ends in the order in which they are asked for a data source.
const std::vector<std::unique_ptr<Provider>>& providerTable();

// A session from the first back-end that knows the data source. Throws ProviderError: the
// back-end's own, or "ORA-12154" with what was tried when none knows it.
std::unique_ptr<Session> openSession(const DataSource& source,
                                     const std::vector<std::unique_ptr<Provider>>& providers);
