#pragma once

#include <QLatin1StringView>

#include <span>

// What a menu entry or a toolbar button asks for.
enum class UserCommand {
    None,
    Connect,
    Disconnect,
    NewQuery,
    OpenQuery,
    CloseQuery,
    Save,
    SaveAs,
    SaveAll,
    AddToFavourites,
    Print,
    Exit,
    Cut,
    Copy,
    Paste,
    SelectAll,
    ClearWindow,
    Execute,
    ResultsInGrid,
    ResultsInText,
    ResultsInFile,
    GenerateCode,
    RefreshTrees,
    ShowOptions,
    Cascade,
    TileHorizontal,
    TileVertical,
    HelpContents,
    HelpSearch,
    ShowAbout,
    OpenObject,
    OpenFavourite,
    ToolbarUndo,
    ToggleBrowser,
};

enum class MenuKind {
    Menu,      // begins a menu of the menu bar
    Popup,     // begins a context menu
    Item,      // belongs to the menu begun last, as all below
    Tick,      // an item that can be ticked
    Separator, // has a name too
};

struct MenuEntry {
    MenuKind kind;
    QLatin1StringView name; // object name
    QLatin1StringView caption;
    UserCommand command = UserCommand::None;
    QLatin1StringView shortcut = {}; // portable text
};

// The menus from left to right, their entries from top to bottom.
std::span<const MenuEntry> menuTable();
