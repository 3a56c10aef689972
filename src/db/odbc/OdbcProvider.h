#pragma once

#include "Provider.h"

// The system's ODBC manager: a configured data source of that name, else an installed driver whose
// name says Oracle, with the data source's name as its DBQ.
std::unique_ptr<Provider> makeOdbcProvider();
