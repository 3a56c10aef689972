#pragma once

#include <QString>

#include <functional>

class Host;
class frmQuery;

// Opening and saving the text of query windows.

// Makes, numbers and shows a query window; null after a failure, which was reported.
using MakeQueryWindow = std::function<frmQuery*()>;

// Asks for a path when it is empty; a cancelled dialog changes nothing.
void Open_Query(const QString& path, Host& host, const MakeQueryWindow& New_Query);

// Reads the file into a new window. A file that cannot be read is told about and makes none.
void Open_Query_File(const QString& path, Host& host, const MakeQueryWindow& New_Query);

// Replaces the window's file whole with its text and a line end, in the encoding in which it was
// read as far as all characters fit; asks for a name when saveAs is true or the window has none.
// False when the dialog was cancelled; throws Error when the file cannot be written. The window's
// FileName and UnSavedChanges then are as before, as is the old file.
bool Save_Query_File(frmQuery& window, bool saveAs, Host& host);
