#include "ScriptText.h"

QString withEditorLineEnds(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    lines.replace(u'\r', u'\n');
    return lines.replace(QLatin1String("\n"), QLatin1String("\r\n"));
}
