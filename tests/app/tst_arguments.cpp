#include "CommandLine.h"
#include "Version.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;

// The workbench's command line: what is the logon, what the toolkit's, what is refused.
class tst_arguments : public QObject {
    Q_OBJECT

private:
    struct Outcome {
        int status;
        QString output;
        QString problem;
    };

    // platform: empty to let the toolkit look for a display, where there is none.
    Outcome run(const QStringList& arguments, const QString& platform) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            environment.remove(name);
        if (!platform.isEmpty())
            environment.insert(u"QT_QPA_PLATFORM"_s, platform);
        environment.insert(u"QUILLMATE_HOME"_s, m_home.filePath(u"home"_s));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(QUILLMATE_WORKBENCH), arguments);
        process.waitForFinished();
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir m_home;

private Q_SLOTS:
    void logonAmongOptions_data() {
        QTest::addColumn<QList<QByteArray>>("arguments");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QByteArray>("left");
        using Words = QList<QByteArray>;
        QTest::newRow("nothing") << Words{} << u"//"_s << ""_ba;
        QTest::newRow("no options") << Words{"u|p|s"_ba} << u"u/p/s"_s << ""_ba;
        QTest::newRow("before") << Words{"-style"_ba, "fusion"_ba, "u|p|s"_ba} << u"u/p/s"_s
                                << "-style fusion"_ba;
        QTest::newRow("behind") << Words{"u|p|s"_ba, "-style"_ba, "fusion"_ba} << u"u/p/s"_s
                                << "-style fusion"_ba;
        QTest::newRow("only options") << Words{"--help"_ba} << u"//"_s << "--help"_ba;
        QTest::newRow("a dash in a password with blanks")
            << Words{"u|my"_ba, "-style"_ba, "word|s"_ba} << u"u/my -style word/s"_s << ""_ba;
        QTest::newRow("a service with blanks")
            << Words{"u|p|my"_ba, "server"_ba, "-x"_ba} << u"u/p/my server"_s << "-x"_ba;
    }
    void logonAmongOptions() {
        QFETCH(QList<QByteArray>, arguments);
        QByteArray program = "quillmate";
        std::vector<char*> words{program.data()};
        for (QByteArray& argument : arguments)
            words.push_back(argument.data());
        int count = int(words.size());
        words.push_back(nullptr);
        const Logon logon = extractLogon(count, words.data());
        QTEST(QString(logon.user + u'/' + logon.password + u'/' + logon.service), "fields");
        QList<QByteArray> left;
        for (int i = 1; i < count; ++i)
            left << words[std::size_t(i)];
        QTEST(left.join(' '), "left");
        QCOMPARE(words[std::size_t(count)], nullptr);
    }

    void answersWithoutADisplay_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("beginning");
        QTest::newRow("help") << QStringList{u"--help"_s} << u"Usage: quillmate "_s;
        QTest::newRow("help, short") << QStringList{u"-h"_s} << u"Usage: quillmate "_s;
        QTest::newRow("behind a logon")
            << QStringList{u"a|b|c"_s, u"--help"_s} << u"Usage: quillmate "_s;
        QTest::newRow("version") << QStringList{u"--version"_s}
                                 << u"quillmate " QUILLMATE_VERSION "\n"_s;
    }
    void answersWithoutADisplay() {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, beginning);
        const Outcome outcome = run(arguments, {});
        QVERIFY2(outcome.output.startsWith(beginning), qPrintable(outcome.output));
        QCOMPARE(outcome.problem, QString());
        QCOMPARE(outcome.status, 0);
    }

    void unknownOptionsStartNothing_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("alone") << QStringList{u"--frobnicate"_s};
        QTest::newRow("behind one of the toolkit's")
            << QStringList{u"-style"_s, u"fusion"_s, u"--frobnicate"_s};
        QTest::newRow("behind the logon") << QStringList{u"a|b|c"_s, u"--frobnicate"_s};
    }
    void unknownOptionsStartNothing() {
        QFETCH(const QStringList, arguments);
        const Outcome outcome = run(arguments, u"offscreen"_s);
        QVERIFY2(outcome.problem.contains(u"Unknown option --frobnicate"_s),
                 qPrintable(outcome.problem));
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.status, 2);
        QVERIFY(!QFileInfo::exists(m_home.filePath(u"home"_s)));
    }
};

QTEST_GUILESS_MAIN(tst_arguments)
#include "tst_arguments.moc"
