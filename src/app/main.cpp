#include "CommandLine.h"
#include "DesktopHost.h"
#include "MDIMain.h"
#include "Trace.h"
#include "Version.h"
#include "frmSplash.h"
#include "modDatabase.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

using namespace Qt::StringLiterals;

namespace {

// The logon among the arguments. One that begins with "-" is the toolkit's own and may take a
// value, so the logon then begins at the first argument with a "|".
std::span<char*> logonArguments(std::span<char*> arguments) {
    if (arguments.empty() || arguments.front()[0] != '-')
        return arguments;
    const auto begin = std::find_if(arguments.begin(), arguments.end(), [](const char* argument) {
        return std::strchr(argument, '|') != nullptr;
    });
    return {begin, arguments.end()};
}

} // namespace

int main(int argc, char** argv) {
    const std::span<char*> logon = logonArguments({argv + 1, argv + argc});
    const Logon prefill = takeLogon(logon);
    argc -= int(logon.size());
    QApplication app(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(QUILLMATE_NAME));
    QApplication::setApplicationVersion(QString::fromLatin1(QUILLMATE_VERSION));

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
