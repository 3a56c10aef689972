#pragma once

#include "MenuTable.h"

enum class ToolbarKind {
    Button,
    DropDown, // a button with a menu of the DropDownItems that follow
    DropDownItem,
    TwoState,
    Separator,
};

struct ToolbarEntry {
    ToolbarKind kind;
    QLatin1StringView key; // decides the action; "Toolbar_" + key is the object name
    QLatin1StringView caption;
    QLatin1StringView tooltip;
    UserCommand command = UserCommand::None;
};

// The toolbar from left to right.
std::span<const ToolbarEntry> toolbarTable();
