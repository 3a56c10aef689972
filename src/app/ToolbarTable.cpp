#include "ToolbarTable.h"

using namespace Qt::StringLiterals;

std::span<const ToolbarEntry> toolbarTable() {
    using enum ToolbarKind;
    static constexpr ToolbarEntry table[] = {
        {DropDown, "new"_L1, "New"_L1, "New Query"_L1, UserCommand::NewQuery},
        {DropDownItem, "bqw"_L1, "Blank Query Window"_L1, {}, UserCommand::NewQuery},
        {Button, "open"_L1, "Open"_L1, "Open Query"_L1, UserCommand::OpenQuery},
        {Button, "save"_L1, "Save"_L1, "Save Query"_L1, UserCommand::Save},
        {Separator, {}, {}, {}},
        {Button, "run"_L1, "Run"_L1, "Execute Query (F5)"_L1, UserCommand::Execute},
        {Separator, {}, {}, {}},
        {Button, "cut"_L1, "Cut"_L1, "Cut (Ctrl+X)"_L1, UserCommand::Cut},
        {Button, "copy"_L1, "Copy"_L1, "Copy (Ctrl+C)"_L1, UserCommand::Copy},
        {Button, "paste"_L1, "Paste"_L1, "Paste (Ctrl+V)"_L1, UserCommand::Paste},
        {Button, "clear"_L1, "Clear"_L1, "Clear Window"_L1, UserCommand::ClearWindow},
        {Button, "undo"_L1, "Undo"_L1, "Undo"_L1, UserCommand::ToolbarUndo},
        {Separator, {}, {}, {}},
        {TwoState, "browser"_L1, "Browser"_L1, "Object Browser"_L1, UserCommand::ToggleBrowser},
    };
    return table;
}
