#pragma once

class QMainWindow;
class QueryWindows;
class Workbench;

// Brings the main window back as it was left at the last Exit.
namespace WindowMemory {

// A window that was never left, whose file is damaged or whose screen is gone stays where it is.
void restore(QMainWindow& window, Workbench& workbench, QueryWindows& queries);
// A folder that cannot be written is no reason to stop an Exit: nothing is then remembered.
void save(const QMainWindow& window, const Workbench& workbench, const QueryWindows& queries);

} // namespace WindowMemory
