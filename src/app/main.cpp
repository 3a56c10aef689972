#include "DesktopHost.h"
#include "MDIMain.h"
#include "Trace.h"
#include "Version.h"
#include "modDatabase.h"

#include <QApplication>
#include <QTimer>

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(QUILLMATE_NAME));
    QApplication::setApplicationVersion(QString::fromLatin1(QUILLMATE_VERSION));

    DesktopHost host;
    TraceLog trace;
    modDatabase database(host, trace);
    MDIMain window(host, database, trace);
    window.Load();
    window.show();
    QTimer::singleShot(0, &window, [&window] { window.perform(UserCommand::Connect); });
    return QApplication::exec();
}
