#pragma once

#include <QString>

namespace QueryType {
inline const QString Select = QStringLiteral("SELECT");   // returns rows, goes to the result output
inline const QString General = QStringLiteral("GENERAL"); // run for its effect
} // namespace QueryType

// One statement of a batch.
struct cQuery {
    bool QueryValid = false; // set by the splitter; nothing reads it
    QString QueryString;     // without its terminating ";"
    QString QueryType;
};
