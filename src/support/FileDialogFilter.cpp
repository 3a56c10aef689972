#include "FileDialogFilter.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

QString toolkitEntry(QString description, QString patterns) {
    // The dialog shows and applies what stands in the last parentheses.
    if (description.endsWith(u')'))
        description.truncate(description.lastIndexOf(u'('));
    patterns.replace(u';', u' ');
    patterns.replace("*.*"_L1, "*"_L1);
    return description.trimmed() + u" ("_s + patterns + u')';
}

} // namespace

QString toolkitFilter(const QString& filter) {
    const QStringList parts = filter.split(u'|');
    QStringList entries;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        entries << toolkitEntry(parts[i], parts[i + 1]);
    return entries.join(u";;"_s);
}
