#include "CommandLine.h"
#include "DesktopHost.h"
#include "Images.h"
#include "MDIMain.h"
#include "ProgramArguments.h"
#include "Trace.h"
#include "Version.h"
#include "WorkbenchArguments.h"
#include "frmSplash.h"
#include "modDatabase.h"

#include <QApplication>
#include <QStyle>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

enum ExitStatus { Answered = 0, NotAnswered = 1, NotStarted = 2 };

} // namespace

int main(int argc, char** argv) {
    const ProgramArguments arguments(argc, argv);
    Logon prefill = extractLogon(argc, argv);
    // Before the toolkit looks for a display.
    if (const QString answer = answerToOptions(argc, argv); !answer.isEmpty())
        return printAnswer(answer) ? Answered : NotAnswered;

    QApplication app(argc, argv); // takes the options that are its own
    QApplication::setApplicationName(QString::fromLatin1(QUILLMATE_NAME));
    QApplication::setApplicationVersion(QString::fromLatin1(QUILLMATE_VERSION));
    QApplication::setDesktopFileName(u"quillmate"_s);
    keepInksWhenSelected(QApplication::style()->name() == "windowsvista"_L1);
    if (prefill.isEmpty())
        prefill = extractLogon(argc, argv);
    if (argc > 1) {
        printProblem(u"Unknown option %1."_s.arg(argumentText(argv[1])));
        return NotStarted;
    }

    DesktopHost host;
    TraceLog trace;
    modDatabase database(host, trace);
    std::unique_ptr<MDIMain> window;
    frmSplash splash;
    QObject::connect(&splash, &frmSplash::Timer, &app, [&] {
        window = std::make_unique<MDIMain>(host, database, trace);
        window->setLoginPrefill(prefill);
        window->Load();
        window->show();
        QTimer::singleShot(0, window.get(), [&] { window->perform(UserCommand::Connect); });
    });
    splash.show();
    return QApplication::exec();
}
