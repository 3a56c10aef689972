#include "ConnectionString.h"

#include <QHash>

DataSource parseConnectionString(const QString& text) {
    QHash<QString, QString> values;
    for (const QString& part : text.split(u';')) {
        const qsizetype equals = part.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = part.left(equals).trimmed().toLower();
        if (!values.contains(key))
            values.insert(key, part.mid(equals + 1));
    }
    return {text, values.value(QStringLiteral("data source")),
            values.value(QStringLiteral("user id")), values.value(QStringLiteral("password"))};
}
