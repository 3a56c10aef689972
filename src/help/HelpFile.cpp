#include "HelpFile.h"

#include "ProgramFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString helpFile() {
    const QString own = Program_File(u"Help/TWX.CHM"_s);
    const QString program = QCoreApplication::applicationDirPath();
    const QStringList places = {own, program + u"/Help/TWX.CHM"_s,
                                program + u"/../share/quillmate/Help/TWX.CHM"_s,
                                program + u"/../Resources/Help/TWX.CHM"_s};
    for (const QString& place : places) {
        if (QFileInfo::exists(place))
            return QDir::toNativeSeparators(QDir::cleanPath(place));
    }
    return own;
}
