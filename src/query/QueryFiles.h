#pragma once

#include <QString>

class Host;
class frmQuery;

// Replaces the window's file whole with its text and a line end; asks for a name when saveAs is
// true or the window has none. False when the dialog was cancelled; throws Error when the file
// cannot be written. The window's FileName and UnSavedChanges then are as before, as is the old
// file.
bool Save_Query_File(frmQuery& window, bool saveAs, Host& host);
