#pragma once

#include "RowAction.h"
#include "TreeStatements.h"

#include <cstddef>

namespace ora {

struct TriggerEvent {
    RowAction action;
    const char* word;
    bool CreateTrigger::*on; // whether the trigger fires for it
};

inline constexpr TriggerEvent triggerEvents[] = {
    {RowAction::Insert, "INSERT", &CreateTrigger::onInsert},
    {RowAction::Update, "UPDATE", &CreateTrigger::onUpdate},
    {RowAction::Delete, "DELETE", &CreateTrigger::onDelete},
};

constexpr const TriggerEvent& triggerEvent(RowAction action) {
    return triggerEvents[static_cast<std::size_t>(action)];
}

} // namespace ora
