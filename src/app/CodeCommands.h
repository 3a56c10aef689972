#pragma once

class Host;
class QWidget;
class frmQuery;

namespace CodeCommands {

// Shows the window's whole script as source text that builds it in a string variable, in a dialog
// over the parent. The clipboard receives it too, unless it is short.
void Generate_Code(const frmQuery& query, Host& host, QWidget* parent);

} // namespace CodeCommands
