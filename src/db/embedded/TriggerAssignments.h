#pragma once

#include "Catalog.h"
#include "Definitions.h"

namespace ora {

// The enabled BEFORE triggers of a table whose one statement sets a :NEW value, in the order in
// which they were made. Others are stored as triggers of the engine.
std::vector<RowAssignment> rowAssignments(const std::vector<TriggerDefinition>& triggers);

// The trigger's one statement as an assignment: ":NEW.c := expression;" and "SELECT expression INTO
// :NEW.c FROM DUAL;". Nothing when it is something else.
struct ParsedAssignment {
    std::string column;
    std::string expression;
};
std::optional<ParsedAssignment> parseAssignment(std::string_view statement);

// The one statement of a trigger body, without BEGIN, END and the semicolons. Nothing when there
// are several, or declarations.
std::optional<std::string> singleStatement(std::string_view body);

} // namespace ora
