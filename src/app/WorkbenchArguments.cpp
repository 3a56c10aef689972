#include "WorkbenchArguments.h"

#include "CallersConsole.h"
#include "VersionText.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

bool print(const QString& text, std::FILE* stream) {
    useCallersConsole();
    const QByteArray line = text.toUtf8() + '\n';
    const bool isWritten =
        std::fwrite(line.constData(), 1, size_t(line.size()), stream) == size_t(line.size());
    return std::fflush(stream) == 0 && isWritten;
}

QString usageText() {
    return uR"(Usage: quillmate [options] ['user|password|service']

Opens the workbench for people who query an Oracle database. Its login dialog is
filled in with the user, the password and the service given here; nobody is
logged on before its OK is chosen. Fewer parts fill the fields that they reach.
The user demo with the password demo and the service DEMO is a sample database.

Options:
  -h, --help          this text
  --version           the program's version

Options of Qt are taken as well, as "-style fusion". They stand before or behind
the logon.

Exit status: 0 the workbench was closed, 2 the command line is wrong.)"_s;
}

} // namespace

QString answerToOptions(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const QLatin1StringView option(argv[i]);
        if (option == "--help"_L1 || option == "-h"_L1)
            return usageText();
        if (option == "--version"_L1)
            return versionOutput(u"quillmate"_s);
    }
    return {};
}

bool printAnswer(const QString& text) {
    return print(text, stdout);
}

void printProblem(const QString& problem) {
    print(u"quillmate: "_s + problem + u"  --help tells how it is used."_s, stderr);
}
