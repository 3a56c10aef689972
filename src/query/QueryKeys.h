#pragma once

class QEvent;

// The keys that a query window takes before its controls do.
enum class QueryKey { None, ClearEditor, ShowTrace };

// Of a key press, or of the question whether one overrides a shortcut.
QueryKey queryKeyOf(const QEvent& event);
