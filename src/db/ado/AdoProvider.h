#pragma once

#include "Provider.h"

// ActiveX Data Objects with the connection string as it stands, provider included.
std::unique_ptr<Provider> makeAdoProvider();
