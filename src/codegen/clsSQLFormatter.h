#pragma once

#include <QString>

class Host;

// Turns SQL into source lines that build the same text in a string variable. The SQL is not parsed:
// quotes and line ends in it are copied as they are, even where the source then does not compile.
class clsSQLFormatter {
public:
    // host's clipboard receives what FormatSQL returns; not owned.
    explicit clsSQLFormatter(Host& host)
        : m_host(host) {}

    // width: characters of SQL a line, at least 1; a longer word makes a longer line, and so does
    // the last line of a text whose words leave more over than 25 lines hold. An SQL text shorter
    // than the width leaves the clipboard alone and, without a declaration, comes back unquoted.
    // Without line continuations the last character of the SQL is missing, on purpose.
    QString FormatSQL(const QString& SQL, qint32 width, bool lineContinuations,
                      const QString& variableName, bool declareVariable, bool breakAtFromAndWhere);

private:
    Host& m_host;
};
