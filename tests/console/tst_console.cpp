#include "CommandLine.h"
#include "Version.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int status = -1;
    QByteArray rows;
    QString messages;
};

} // namespace

class tst_console : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QString logon(const QString& password = u"pw"_s) const {
        return u"ann|"_s + password + u'|' + path(u"t.db"_s);
    }

    void prepare(QProcess& process, const QStringList& arguments) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QUILLMATE_HOME"_s, m_folder.path());
        environment.remove(u"QUILLMATE_PASSWORD"_s);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.setProgram(QStringLiteral(QUILLMATE_CONSOLE));
        process.setArguments(arguments);
#ifdef Q_OS_UNIX
        process.setChildProcessModifier([] { ::setsid(); }); // no terminal to ask on
#endif
    }

    static Outcome finish(QProcess& process, const QByteArray& input) {
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished();
        const int status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        return {status, process.readAllStandardOutput(),
                QString::fromUtf8(process.readAllStandardError())};
    }

    Outcome run(const QStringList& arguments, const QByteArray& input = {}) const {
        QProcess process;
        prepare(process, arguments);
        process.start();
        return finish(process, input);
    }

    static QByteArray content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "missing"_ba;
    }
    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

private Q_SLOTS:
    void initTestCase() {
        write(path(u"t.db"_s), {}); // an empty file is an empty database
        const Outcome made =
            run({logon(), u"-"_s, u"--quiet"_s}, "create table t (a number, b varchar2(20));\n"
                                                 "insert into t values (1, 'x');\n"
                                                 "insert into t values (20, 'Łódź');\n"
                                                 "insert into t values (3, null);\n");
        QCOMPARE(made.messages, QString());
        QCOMPARE(made.status, 0);
    }

    void scripts_data() {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("rows");
        QTest::addColumn<QString>("messages"); // null: not compared
        const QByteArray all = "select a \"A\", b \"B\" from t order by a;";
        QTest::newRow("rows as comma-separated text")
            << QStringList{} << all << 0 << "A,B\r\n1,x\r\n3,\r\n20,Łódź\r\n"_ba
            << u"Running query...\nQuery complete.\nDisplaying query results...\nQuery Complete.\n"
               "Query batch complete.\n"_s;
        QTest::newRow("rows as a table, each statement's own")
            << QStringList{u"--output"_s, u"grid"_s, u"--quiet"_s}
            << all + "select b || '\ty' \"X\" from t where a = 1;" << 0
            << "A   B\n--  ----\n1   x\n3\n20  Łódź\nX\n---\nx y\n"_ba << u""_s;
        QTest::newRow("limit holds for each statement")
            << QStringList{u"--limit"_s, u"1"_s, u"--quiet"_s} << all + all << 0
            << "A,B\r\n1,x\r\nA,B\r\n1,x\r\n"_ba << u""_s;
        QTest::newRow("a failure in the middle stops nothing")
            << QStringList{u"--quiet"_s}
            << "select 1 \"A\" from dual;\nselect * from nope;\nselect 2 \"A\" from dual;"_ba << 1
            << "A\r\n1\r\nA\r\n2\r\n"_ba
            << u"ORA-00942: table or view does not exist    (select * from nope...)\n"_s;
        QTest::newRow("an output that fails is a failure")
            << QStringList{u"--quiet"_s} << "select b from t where a = 3;"_ba << 1 << ""_ba
            << u"Error Loading Results Grid - 94:Invalid use of Null\n"_s;
        QTest::newRow("Windows-1252 and lone LF")
            << QStringList{u"--quiet"_s} << "select 'caf\xE9' \"X\"\nfrom t\nwhere a = 1;"_ba << 0
            << "X\r\ncafé\r\n"_ba << u""_s;
        QTest::newRow("an empty script fails like an empty statement")
            << QStringList{} << ""_ba << 1 << ""_ba << QString();
    }
    void scripts() {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, script);
        QFETCH(QString, messages);
        const QString file = path(u"script.sql"_s);
        write(file, script);
        for (const auto& [name, input] : {std::pair(file, QByteArray()), {u"-"_s, script}}) {
            const Outcome outcome = run(QStringList{logon(), name} + options, input);
            QTEST(outcome.rows, "rows");
            if (!messages.isNull())
                QCOMPARE(outcome.messages, messages);
            QTEST(outcome.status, "status");
        }
    }

    void textBehindTheLastMarkIsNamed() {
        const Outcome outcome =
            run({logon(), u"-"_s}, "select a \"A\" from t where a = 1;\n-- end\nselect b from t");
        QCOMPARE(outcome.rows, "A\r\n1\r\n"_ba);
        QVERIFY(outcome.messages.contains(u"behind the last \";\" is not run"_s));
        QCOMPARE(outcome.status, 0);
    }

    void resultFiles() {
        const Outcome outcome =
            run({u"--output"_s, u"file"_s, u"r.csv"_s, logon(), u"-"_s},
                "select a \"A\" from t where a = 1;select b \"B\" from t where a = 1;");
        QCOMPARE(outcome.rows, ""_ba);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(content(path(u"r.csv"_s)), "A\r\n1\r\n"_ba);
        QCOMPARE(content(path(u"r-2.csv"_s)), "B\r\nx\r\n"_ba);

        const Outcome failed =
            run({logon(), u"-"_s, u"--output"_s, u"file"_s, u"missing/r.csv"_s, u"--quiet"_s},
                "select a from t;");
        QCOMPARE(failed.status, 1);
        QVERIFY(failed.messages.contains(u"missing/r.csv"_s));
    }

    void refusedCommandLines_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("nothing") << QStringList{} << u"logon and the script are missing"_s;
        QTest::newRow("no script") << QStringList{u"a|b|c"_s} << u"script is missing"_s;
        QTest::newRow("too many") << QStringList{u"a|b|c"_s, u"-"_s, u"x"_s} << u"too many: x"_s;
        QTest::newRow("unknown option") << QStringList{u"--frobnicate"_s} << u"--frobnicate"_s;
        QTest::newRow("unknown short option") << QStringList{u"-x"_s} << u"Unknown option -x"_s;
        QTest::newRow("unknown output")
            << QStringList{u"--output"_s, u"xml"_s, u"a|b|c"_s, u"-"_s} << u"csv, grid or file"_s;
        QTest::newRow("file without a path")
            << QStringList{u"a|b|c"_s, u"-"_s, u"--output"_s, u"file"_s} << u"needs a value"_s;
        QTest::newRow("limit that is no number")
            << QStringList{u"--limit"_s, u"few"_s, u"a|b|c"_s, u"-"_s} << u"number of rows"_s;
        QTest::newRow("script that is not there")
            << QStringList{u"a|b|c"_s, u"none.sql"_s} << u"none.sql cannot be read"_s;
        QTest::newRow("unknown service, with the reason")
            << QStringList{u"a|b|NOWHERE"_s, u"-"_s} << u"ORA-12154"_s;
        QTest::newRow("no password and no terminal")
            << QStringList{u"a||DEMO"_s, u"-"_s} << u"No password"_s;
    }
    void refusedCommandLines() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const Outcome outcome = run(arguments);
        QVERIFY2(outcome.messages.contains(message), qPrintable(outcome.messages));
        QCOMPARE(outcome.rows, ""_ba);
        QCOMPARE(outcome.status, 2);
    }

    void helpAndVersion() {
        const Outcome help = run({u"--help"_s});
        QCOMPARE(help.status, 0);
        QVERIFY(help.rows.startsWith("Usage: quillmate-console"));
        const Outcome version = run({u"--version"_s});
        QCOMPARE(version.status, 0);
        QVERIFY(version.rows.startsWith("quillmate-console " QUILLMATE_VERSION "\n"));
    }

    void passwordFromTheEnvironment_data() {
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("status");
        QTest::newRow("right") << u"demo"_s << 0;
        QTest::newRow("wrong") << u"demo "_s << 2;
    }
    void passwordFromTheEnvironment() {
        QFETCH(QString, password);
        QProcess process;
        prepare(process, {u"demo||DEMO"_s, u"-"_s});
        QProcessEnvironment environment = process.processEnvironment();
        environment.insert(u"QUILLMATE_PASSWORD"_s, password);
        process.setProcessEnvironment(environment);
        process.start();
        QTEST(finish(process, "select 1 from dual;").status, "status");
    }

    void logonFields_data() {
        QTest::addColumn<QList<QByteArray>>("arguments");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QByteArray>("visible");
        using Words = QList<QByteArray>;
        QTest::newRow("all three") << Words{"u|pw|s"_ba} << u"u/pw/s"_s << "u|**|s"_ba;
        QTest::newRow("the rest is the service's")
            << Words{"u|pw|s|t"_ba} << u"u/pw/s|t"_s << "u|**|s|t"_ba;
        QTest::newRow("without service") << Words{"u|pw"_ba} << u"u/pw/"_s << "u|**"_ba;
        QTest::newRow("user only") << Words{"user"_ba} << u"user//"_s << "user"_ba;
        QTest::newRow("empty fields") << Words{"||s"_ba} << u"//s"_s << "||s"_ba;
        QTest::newRow("blanks not quoted")
            << Words{"u|p"_ba, "w|s"_ba, "t"_ba} << u"u/p w/s t"_s << "u|* *|s t"_ba;
    }
    void logonFields() {
        QFETCH(QList<QByteArray>, arguments);
        std::vector<char*> words;
        for (QByteArray& argument : arguments)
            words.push_back(argument.data());
        const Logon logon = takeLogon(words);
        QTEST(QString(logon.user + u'/' + logon.password + u'/' + logon.service), "fields");
        QTEST(arguments.join(' '), "visible");
    }

#ifdef Q_OS_LINUX
    // Also for root, who could write beside the installed program.
    void installedProgramLeavesItsFolderAlone() {
        QVERIFY(QDir().mkpath(path(u"usr/bin"_s)) && QDir().mkpath(path(u"usr/share/quillmate"_s)));
        const QString program = path(u"usr/bin/quillmate-console"_s);
        QVERIFY(QFile::copy(QStringLiteral(QUILLMATE_CONSOLE), program));
        QProcess process;
        prepare(process, {u"demo|demo|DEMO"_s, u"-"_s, u"--quiet"_s});
        QProcessEnvironment environment = process.processEnvironment();
        environment.remove(u"QUILLMATE_HOME"_s);
        environment.remove(u"XDG_DATA_HOME"_s);
        environment.insert(u"HOME"_s, path(u"home"_s));
        process.setProcessEnvironment(environment);
        process.setProgram(program);
        process.start();
        QCOMPARE(finish(process, "select 1 \"A\" from dual;").rows, "A\r\n1\r\n"_ba);
        QCOMPARE(QDir(path(u"usr/bin"_s)).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList{u"quillmate-console"_s});
        QVERIFY(QFile::exists(path(u"home/.local/share/Quillmate/Databases/DEMO.db"_s)));
    }

    void passwordIsNotVisible() {
        QProcess process;
        prepare(process, {logon(u"s3cret"_s), u"-"_s});
        process.start();
        QVERIFY(process.waitForStarted());
        const QString commandLine = u"/proc/%1/cmdline"_s.arg(process.processId());
        QTRY_VERIFY(content(commandLine).contains("ann|******|"));
        QVERIFY(!content(commandLine).contains("s3cret"));
        QCOMPARE(finish(process, "select a from t where a = 1;").status, 0);
    }

    void fullDisk() {
        QProcess process;
        prepare(process, {logon(), u"-"_s, u"--quiet"_s});
        process.setStandardOutputFile(u"/dev/full"_s);
        process.start();
        const Outcome outcome = finish(process, "select a from t;insert into t values (9, 'n');");
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.messages.contains(u"No space left"_s));
        QCOMPARE(run({logon(), u"-"_s, u"--quiet"_s}, "delete from t where a = 9;").status, 0);
    }
#endif

#ifdef Q_OS_UNIX
    void readerThatLeaves() {
        QProcess process;
        prepare(process, {logon(), u"-"_s, u"--quiet"_s});
        process.setStandardOutputFile(QProcess::nullDevice());
        // Its standard output becomes a pipe that nobody reads.
        process.setChildProcessModifier([] {
            int ends[2];
            if (::setsid() >= 0 && ::pipe(ends) == 0) {
                ::dup2(ends[1], STDOUT_FILENO);
                ::close(ends[0]);
                ::close(ends[1]);
            }
        });
        process.start();
        const Outcome outcome = finish(process, "select a from t;");
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.messages.contains(u"Broken pipe"_s));
    }

    void passwordFromTheTerminal_data() {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<int>("status");
        QTest::newRow("right, with a correction") << "dem\xC3\xB6\x7Fo\n"_ba << 0;
        QTest::newRow("started anew") << "wrong\x15"
                                         "demo\r"_ba
                                      << 0;
        QTest::newRow("wrong") << "nope\n"_ba << 2;
        QTest::newRow("given up") << "demo\x03"_ba << 2;
    }
    void passwordFromTheTerminal() {
        QFETCH(QByteArray, typed);
        const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
        const QByteArray name = ::ptsname(terminal);
        QProcess process;
        prepare(process, {u"demo||DEMO"_s, u"-"_s, u"--quiet"_s});
        process.setChildProcessModifier([name] {
            ::setsid();
            ::open(name.constData(), O_RDWR); // becomes the terminal of the new session
        });
        process.start();

        QByteArray shown;
        const auto readShown = [&] {
            pollfd waiting{terminal, POLLIN, 0};
            char bytes[256];
            while (::poll(&waiting, 1, 50) == 1 && (waiting.revents & POLLIN))
                shown.append(bytes, ::read(terminal, bytes, sizeof bytes));
        };
        process.write("select 1 from dual;");
        process.closeWriteChannel();
        QTRY_VERIFY((readShown(), shown.contains("Password of demo for DEMO: ")));
        QCOMPARE(::write(terminal, typed.constData(), size_t(typed.size())), typed.size());
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
        readShown();
        ::close(terminal);
        QTEST(process.exitCode(), "status");
        QCOMPARE(shown, "Password of demo for DEMO: \r\n"_ba); // nothing was echoed
    }
#endif
};

QTEST_GUILESS_MAIN(tst_console)
#include "tst_console.moc"
