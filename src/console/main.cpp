#include "ByteStreams.h"
#include "ConsoleArguments.h"
#include "ConsoleHost.h"
#include "ConsoleWindow.h"
#include "ProgramArguments.h"
#include "QueryBatch.h"
#include "ScriptText.h"
#include "StandardOutput.h"
#include "TerminalPassword.h"
#include "TextEncoding.h"
#include "Trace.h"
#include "Version.h"
#include "VersionText.h"
#include "clsQueryRunner.h"
#include "modDatabase.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

enum ExitStatus { Succeeded = 0, StatementFailed = 1, NotStarted = 2 };

void complain(const QString& problem) {
    say(u"quillmate-console: "_s + problem);
}

std::optional<QString> readScript(const QString& path) {
    constexpr int standardInput = 0;
    QFile file(path);
    const bool isOpen = path == "-"_L1 ? file.open(standardInput, QIODevice::ReadOnly)
                                       : file.open(QIODevice::ReadOnly);
    const QByteArray bytes = isOpen ? file.readAll() : QByteArray();
    if (file.error() == QFileDevice::NoError)
        return withEditorLineEnds(decodeText(bytes).text);
    complain(u"The script %1 cannot be read: %2"_s.arg(path, file.errorString()));
    return std::nullopt;
}

std::optional<QString> passwordOf(const Logon& logon) {
    constexpr auto variable = "QUILLMATE_PASSWORD";
    if (!logon.password.isEmpty())
        return logon.password;
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable);
    const auto password = askPassword(u"Password of %1 for %2: "_s.arg(logon.user, logon.service));
    if (!password)
        complain(u"No password was given."_s);
    return password;
}

// The trace log holds nothing yet but the reason of the failure, which the message leaves out.
bool connectTo(modDatabase& database, const Logon& logon, const QString& password) {
    database.Build_Connection_String(logon.service, logon.user, password);
    if (database.Open_Connection())
        return true;
    say(database.trace().text().trimmed());
    return false;
}

void noteDroppedText(const QString& script, bool quiet) {
    const QString rest = Unterminated_Rest(Strip_Comments(script));
    if (!rest.isEmpty() && !quiet)
        complain(u"The text behind the last \";\" is not run."_s);
}

// What went wrong besides the statements themselves.
bool reportOutput(const QString& standardOutputProblem, const QString& fileProblem) {
    if (!standardOutputProblem.isEmpty())
        complain(u"Standard output cannot be written: "_s + standardOutputProblem);
    if (!fileProblem.isEmpty())
        complain(fileProblem);
    return standardOutputProblem.isEmpty() && fileProblem.isEmpty();
}

ExitStatus runScript(const ConsoleArguments& arguments) {
    const auto script = readScript(arguments.script);
    if (!script)
        return NotStarted;
    const auto password = passwordOf(arguments.logon);
    if (!password)
        return NotStarted;

    ConsoleHost host(arguments.outputPath);
    TraceLog trace;
    modDatabase database(host, trace);
    if (!connectTo(database, arguments.logon, *password))
        return NotStarted;

    StandardOutput output;
    ConsoleWindow window(*script, arguments.outputMode, arguments.quiet, output);
    clsQueryRunner runner(window, host, database);
    runner.state().MaxRecords = arguments.limit;
    runner.Run_Queries();
    noteDroppedText(*script, arguments.quiet);
    const bool outputSucceeded = reportOutput(output.problem(), runner.state().fileProblem);
    return runner.state().errors || host.failed() || !outputSucceeded ? StatementFailed : Succeeded;
}

ExitStatus print(const QString& text) {
    StandardOutput output;
    output.write(QByteArray(text.toUtf8() + '\n'));
    return reportOutput(output.problem(), {}) ? Succeeded : StatementFailed;
}

} // namespace

int main(int argc, char** argv) {
    const ByteStreams streams;
    const ProgramArguments words(argc, argv);
    const ConsoleArguments arguments = parseArguments(argc, argv);
    if (!arguments.problem.isEmpty()) {
        complain(arguments.problem + u"  --help tells how it is used."_s);
        return NotStarted;
    }
    if (arguments.action == ConsoleArguments::Action::Help)
        return print(usageText());
    if (arguments.action == ConsoleArguments::Action::Version)
        return print(versionOutput(u"quillmate-console"_s));

    // The program's own folder is found through it; the name is shared with the workbench.
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral(QUILLMATE_NAME));
    return runScript(arguments);
}
