#include "EmbeddedProvider.h"

std::unique_ptr<Provider> makeEmbeddedProvider() {
    return nullptr;
}
