#pragma once

#include <QString>

// Where the program keeps its own files: the executable's folder when that is writable and nothing
// was installed in the share/quillmate beside it (portable use), else the user's data folder for
// the program. The environment variable
// QUILLMATE_HOME names another one. Created when missing; decided once a process. Ends without a
// separator.
QString Program_Folder();

// Program_Folder() + the platform's separator + name.
QString Program_File(const QString& name);
