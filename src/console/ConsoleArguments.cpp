#include "ConsoleArguments.h"

#include "ProgramArguments.h"

#include <QStringList>

#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// Takes the words of the command line one after the other; options stand anywhere among them.
class Parser {
public:
    Parser(int argc, char** argv)
        : m_argv(argv)
        , m_count(argc) {}

    ConsoleArguments parse() {
        while (m_next < m_count && m_result.problem.isEmpty())
            readWord();
        if (m_result.problem.isEmpty() && m_result.action == ConsoleArguments::Action::Run &&
            m_positional < 2)
            m_result.problem = m_positional == 0 ? u"The logon and the script are missing."_s
                                                 : u"The script is missing."_s;
        return m_result;
    }

private:
    struct Option {
        QLatin1String name;
        void (Parser::*read)();
    };
    static const Option options[];

    void readWord();

    void readPositional(const QString& word) {
        switch (m_positional++) {
        case 0: m_result.logon = takeLogon({m_argv + m_next - 1, 1}); break;
        case 1: m_result.script = word; break;
        default: m_result.problem = u"One argument too many: %1"_s.arg(word);
        }
    }

    void readOutput() {
        static const struct {
            QLatin1String word;
            const QString& mode;
        } modes[] = {{"csv"_L1, OutputMode::Text},
                     {"grid"_L1, OutputMode::Grid},
                     {"file"_L1, OutputMode::File}};
        const QString word = value("--output"_L1);
        for (const auto& [name, mode] : modes) {
            if (word != name)
                continue;
            m_result.outputMode = mode;
            if (mode == OutputMode::File)
                m_result.outputPath = value("--output file"_L1);
            return;
        }
        complain(u"--output takes csv, grid or file PATH."_s);
    }

    void readLimit() {
        bool isNumber = false;
        m_result.limit = value("--limit"_L1).toInt(&isNumber);
        if (!isNumber || m_result.limit < 0)
            complain(u"--limit takes a number of rows."_s);
    }

    void readQuiet() { m_result.quiet = true; }
    void readHelp() { m_result.action = ConsoleArguments::Action::Help; }
    void readVersion() { m_result.action = ConsoleArguments::Action::Version; }

    QString value(QLatin1String option) {
        if (m_next < m_count)
            return take();
        complain(u"%1 needs a value."_s.arg(option));
        return {};
    }

    void complain(const QString& problem) {
        if (m_result.problem.isEmpty())
            m_result.problem = problem;
    }

    QString take() { return argumentText(m_argv[m_next++]); }

    char** m_argv;
    int m_count;
    int m_next = 1;
    int m_positional = 0;
    ConsoleArguments m_result;
};

const Parser::Option Parser::options[] = {
    {"--output"_L1, &Parser::readOutput}, {"--limit"_L1, &Parser::readLimit},
    {"--quiet"_L1, &Parser::readQuiet},   {"--help"_L1, &Parser::readHelp},
    {"-h"_L1, &Parser::readHelp},         {"--version"_L1, &Parser::readVersion},
};

void Parser::readWord() {
    const QString word = take();
    for (const Option& option : options) {
        if (word == option.name)
            return (this->*option.read)();
    }
    // "-" alone is standard input; a logon may begin with a dash.
    if (word.startsWith(u'-') && word.size() > 1 && !word.contains(u'|'))
        m_result.problem = u"Unknown option %1."_s.arg(word);
    else
        readPositional(word);
}

} // namespace

ConsoleArguments parseArguments(int argc, char** argv) {
    return Parser(argc, argv).parse();
}

QString usageText() {
    return uR"(Usage: quillmate-console [options] 'user|password|service' SCRIPT.sql

Runs the statements of a script, each ended by ";", on the database. SCRIPT is a
file or - for standard input. A failing statement does not stop those after it.
A password left empty is taken from the environment variable QUILLMATE_PASSWORD
or asked for on the terminal.

Options:
  --output csv        rows as comma-separated text on standard output (default)
  --output grid       rows as an aligned table on standard output
  --output file PATH  rows as comma-separated text into the file, which is
                      replaced; the next statements' rows go to PATH with -2,
                      -3 ... before its extension
  --limit N           at most N rows of each statement
  --quiet             only errors on standard error
  -h, --help          this text
  --version           the program's version

Exit status: 0 all statements succeeded, 1 a statement or an output failed,
2 the command line is wrong or the connection failed.)"_s;
}
