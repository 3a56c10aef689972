#pragma once

class QString;

// For controls that serve the clipboard keys themselves. An empty text leaves the clipboard as it
// is.
void putOnClipboard(const QString& text);
// For the platforms that paste a selection with the middle button; nothing elsewhere.
void putOnSelectionClipboard(const QString& text);
