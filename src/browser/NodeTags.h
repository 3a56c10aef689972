#pragma once

#include <QString>

// The kinds of node that events tell apart, compared exactly.
namespace NodeTag {
inline const QString Tables = QStringLiteral("TABLES");
inline const QString Views = QStringLiteral("VIEWS");
inline const QString Sessions = QStringLiteral("SESSIONS");
inline const QString Table = QStringLiteral("TABLE");
inline const QString View = QStringLiteral("VIEW");
inline const QString TableColumns = QStringLiteral("TABLE_COLUMNS");
inline const QString TableIndexes = QStringLiteral("TABLE_INDEXES");
inline const QString TableConstraints = QStringLiteral("TABLE_CONSTRAINTS");
inline const QString TableTriggers = QStringLiteral("TABLE_TRIGGERS");
inline const QString Column = QStringLiteral("COLUMN");
inline const QString Index = QStringLiteral("INDEX");
inline const QString Constraint = QStringLiteral("CONSTRAINT");
inline const QString Trigger = QStringLiteral("TRIGGER");
inline const QString Dummy = QStringLiteral("DUMMY");
} // namespace NodeTag
