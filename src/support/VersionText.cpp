#include "VersionText.h"

#include "Version.h"

QString versionText() {
    return QStringLiteral("Version %1.%2.%3")
        .arg(QUILLMATE_VERSION_MAJOR)
        .arg(QUILLMATE_VERSION_MINOR)
        .arg(QUILLMATE_VERSION_REVISION);
}

QString versionOutput(const QString& program) {
    // In ASCII, for terminals of any encoding.
    return QStringLiteral("%1 %2\nCopyright (C) %3.\nMIT licence; there is no warranty.")
        .arg(program, QLatin1StringView(QUILLMATE_VERSION), QLatin1StringView(QUILLMATE_COPYRIGHT));
}
