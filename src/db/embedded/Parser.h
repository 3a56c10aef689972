#pragma once

#include "Arena.h"
#include "TreeStatements.h"

#include <memory>
#include <string>
#include <string_view>

namespace ora {

// A parsed text and everything that its nodes point to. Not movable: the nodes point into it.
class Tree {
public:
    explicit Tree(std::string_view text)
        : source(text) {}
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    const std::string source;
    Arena arena;
    Statement* statement = nullptr; // of parseStatement
    Query* query = nullptr;         // of parseQueryText
    Expr* expr = nullptr;           // of parseValueText and parseConditionText
};

// One statement. Throws OraError with the server's number where the text is not one; 911 for a
// semicolon behind it, which belongs to the tools that send statements (a trigger keeps its own).
std::unique_ptr<Tree> parseStatement(std::string_view text);

// Parts that the catalog keeps as text: a view's query, a default, a check condition.
std::unique_ptr<Tree> parseQueryText(std::string_view text);
std::unique_ptr<Tree> parseValueText(std::string_view text);
std::unique_ptr<Tree> parseConditionText(std::string_view text);

} // namespace ora
