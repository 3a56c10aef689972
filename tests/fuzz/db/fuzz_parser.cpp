#include "CatalogOfTests.h"
#include "Compiler.h"
#include "OraError.h"
#include "Parser.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Any text is parsed or refused, and what was parsed is bound against a few tables or refused.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static const CatalogOfTests catalog;
    try {
        const auto tree = ora::parseStatement(text);
        const ora::StatementKind kind = tree->statement->kind;
        if (kind <= ora::StatementKind::Merge)
            (void)ora::compile(catalog, *tree->statement);
    } catch (const ora::OraError&) {
        // Refused, as the server would.
    }
    return 0;
}
