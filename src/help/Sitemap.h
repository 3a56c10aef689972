#pragma once

#include <QString>

#include <vector>

// A line of a book's contents or index.
struct HelpEntry {
    QString title;
    QString page; // as "/pages/editor.htm#keys"; empty for a mere heading
    int level = 0;
    bool operator==(const HelpEntry&) const = default;
};

// Reads a contents or index file: nested lists of objects with a name and a local address. What is
// not understood is passed over. Levels grow by at most one from entry to entry.
std::vector<HelpEntry> readSitemap(const QString& html);

// HTML's named and numbered characters, as far as attributes need them.
QString withoutEntities(QString text);
