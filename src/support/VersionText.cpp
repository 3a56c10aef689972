#include "VersionText.h"

#include "Version.h"

QString versionText() {
    return QStringLiteral("Version %1.%2.%3")
        .arg(QUILLMATE_VERSION_MAJOR)
        .arg(QUILLMATE_VERSION_MINOR)
        .arg(QUILLMATE_VERSION_REVISION);
}
