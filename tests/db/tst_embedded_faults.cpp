#include "Backends.h"
#include "SessionText.h"
#include "SqliteDatabase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

// What opening gives: "open", or the failure's text.
QString openFailure(const DataSource& source) {
    try {
        return openSession(source, providerTable())->isOpen() ? u"open"_s : u"closed"_s;
    } catch (const ProviderError& error) {
        return error.description();
    }
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

// Files read as an ordinary user, also where the tests run as root.
class OrdinaryUser {
public:
    OrdinaryUser() {
#ifdef Q_OS_UNIX
        constexpr uid_t nobody = 65534;
        m_changed = ::geteuid() == 0 && ::seteuid(nobody) == 0;
#endif
    }
    ~OrdinaryUser() {
#ifdef Q_OS_UNIX
        if (m_changed && ::seteuid(0) != 0)
            qFatal("cannot become root again");
#endif
    }

private:
    bool m_changed = false;
};

} // namespace

// What a person, a disk or a hostile text can do to the embedded database.
class tst_embedded_faults : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_home;
    QTemporaryDir m_files;

    QString fileNamed(const QString& name) const { return m_files.filePath(name); }
    // A copy of the sample database that a test may spoil.
    QString copyOfDemo(const QString& name) const {
        const QString path = fileNamed(name);
        QFile::remove(path);
        QFile::copy(m_home.filePath(u"Databases/DEMO.db"_s), path);
        return path;
    }
    static std::unique_ptr<Session> openCopy(const QString& path) {
        return openSession({{}, path, u"demo"_s, u"demo"_s}, providerTable());
    }
    std::unique_ptr<Session> openDemo() const { return openCopy(u"DEMO"_s); }

private Q_SLOTS:
    void initTestCase() {
        useProgramFolder(m_home.path());
        QVERIFY(openDemo()->isOpen());
        QFile::setPermissions(m_files.path(), QFile::Permissions(0x7755));
    }

    void login_data() {
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("outcome");
        const QString denied = u"ORA-01017: invalid username/password; logon denied"_s;
        QTest::newRow("user name in any case") << u"demo"_s << u"dEmO"_s << u"demo"_s << u"open"_s;
        QTest::newRow("wrong password") << u"DEMO"_s << u"demo"_s << u"Demo"_s << denied;
        QTest::newRow("empty password") << u"DEMO"_s << u"demo"_s << u""_s << denied;
        QTest::newRow("wrong user") << u"DEMO"_s << u"scott"_s << u"demo"_s << denied;
        QTest::newRow("quote in the user") << u"DEMO"_s << u"' or ''='"_s << u"x"_s << denied;
    }
    void login() {
        QFETCH(QString, service);
        QFETCH(QString, user);
        QFETCH(QString, password);
        QTEST(openFailure({{}, service, user, password}), "outcome");
    }

    void anUnknownServiceTellsWhatWasTried() {
        const QString failure = openFailure({{}, u"ORCL"_s, u"a"_s, u"b"_s});
        QVERIFY2(failure.startsWith(u"ORA-12154: "_s), qPrintable(failure));
        QVERIFY2(failure.contains(u"Databases/ORCL.db"_s), qPrintable(failure));
        QVERIFY(
            openFailure({{}, fileNamed(u"none.db"_s), u"a"_s, u"b"_s}).startsWith(u"ORA-12154"_s));
        QVERIFY(openFailure({{}, u"../DEMO"_s, u"demo"_s, u"demo"_s}).startsWith(u"ORA-12154"_s));
        QVERIFY(openFailure({{}, u""_s, u"demo"_s, u"demo"_s}).startsWith(u"ORA-12154"_s));
    }

    void aFileOfTheProgramFolderIsFoundByName() {
        QFile::copy(m_home.filePath(u"Databases/DEMO.db"_s),
                    m_home.filePath(u"Databases/Second.db"_s));
        QCOMPARE(openFailure({{}, u"SECOND"_s, u"demo"_s, u"demo"_s}), u"open"_s);
    }

    void aFileThatIsNoDatabase() {
        const QString path = fileNamed(u"text.db"_s);
        writeFile(path, QByteArray("this is a shopping list, not a database\n").repeated(100));
        QCOMPARE(openFailure({{}, path, u"demo"_s, u"demo"_s}),
                 u"ORA-01565: error in identifying file: it is not a database"_s);
    }

    void aDamagedFile() {
        const QString path = copyOfDemo(u"damaged.db"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        constexpr qint64 wholeHead = 16 * 1024;
        file.seek(wholeHead);
        file.write(QByteArray(file.size() - wholeHead, '\xa5'));
        file.close();
        QString failure = openFailure({{}, path, u"demo"_s, u"demo"_s});
        if (failure == u"open"_s) {
            const auto session = openCopy(path);
            failure = failureOf(*session, u"SELECT COUNT(unit_price) FROM order_lines"_s);
        }
        QVERIFY2(failure.contains(u"ORA-01578: "_s), qPrintable(failure));
    }

    void aReadOnlyFileIsReadAndNotWritten() {
        const QString path = copyOfDemo(u"readonly.db"_s);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup |
                                        QFile::ReadOther);
        const OrdinaryUser user;
        const auto session = openCopy(path);
        QCOMPARE(printed(*session, u"SELECT COUNT(*) FROM dept"_s).section(u'\n', 1), u"4"_s);
        QCOMPARE(failureOf(*session, u"DELETE FROM emp"_s),
                 u"ORA-16000 -2147467259: ORA-16000: database open for read-only access"_s);
    }

    // Nothing but the engine's own setting fills a file at will, and only a file of another program
    // takes it.
    void aFullFileFailsTheStatementAlone() {
        const QString path = fileNamed(u"full.db"_s);
        SqliteDatabase(path.toStdString(), SqliteDatabase::Mode::Create)
            .run("CREATE TABLE filler (a TEXT)");
        const auto session = openCopy(path);
        session->execute(u"PRAGMA max_page_count = 40"_s);
        const QString failure = failureOf(
            *session, u"INSERT INTO filler WITH RECURSIVE r(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                      "FROM r WHERE i < 1000) SELECT '%1' FROM r"_s.arg(QString(1000, u'x')));
        QVERIFY2(failure.startsWith(u"ORA-01653 "_s), qPrintable(failure));
        QCOMPARE(printed(*session, u"SELECT COUNT(a) FROM filler"_s).section(u'\n', 1), u"0"_s);
    }

    void aFileOfAnotherProgramIsReadAsItIs() {
        const QString path = fileNamed(u"foreign.db"_s);
        SqliteDatabase(path.toStdString(), SqliteDatabase::Mode::Create)
            .run("CREATE TABLE things (id INTEGER PRIMARY KEY, weight REAL, name TEXT);"
                 "INSERT INTO things VALUES (1, 2.5, 'é'), (2, 1e20, NULL)");
        const auto session = openSession({{}, path, u"anybody"_s, {}}, providerTable());
        QCOMPARE(printed(*session, u"SELECT * FROM things"_s),
                 u"id|weight|name\n1|2.5|é\n2|100000000000000000000|(null)"_s);
        QCOMPARE(printed(*session, u"SELECT table_name FROM user_tables"_s).section(u'\n', 1),
                 u"things"_s);
    }

    void aFileThatVanishesEndsTheConnection_data() {
        QTest::addColumn<bool>("replaced");
        QTest::newRow("removed") << false;
        QTest::newRow("replaced by another") << true;
    }
    void aFileThatVanishesEndsTheConnection() {
        QFETCH(bool, replaced);
        const QString path = copyOfDemo(u"vanishing.db"_s);
        const auto session = openCopy(path);
        const QString kept = path + u".kept"_s;
        QFile::remove(kept);
        QVERIFY(QFile::rename(path, kept)); // its inode stays in use
        if (replaced)
            QVERIFY(QFile::copy(kept, path));
        QVERIFY(failureOf(*session, u"DELETE FROM emp"_s).startsWith(u"ORA-03113 "_s));
        QVERIFY(!session->isOpen());
        QVERIFY(failureOf(*session, u"SELECT * FROM emp"_s).startsWith(u"ORA-03114 "_s));
    }

    void hostileTexts_data() {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("start");
        QString nul = u"SELECT 'a"_s;
        nul += QChar(u'\0');
        QTest::newRow("NUL") << QString(nul + u"b' FROM dual"_s) << u"ORA-00911 "_s;
        QTest::newRow("text after the end")
            << u"SELECT 1 FROM dual; DROP TABLE emp"_s << u"ORA-00911 "_s;
        QTest::newRow("only a comment") << u"-- nothing"_s << u"ORA-00900 "_s;
        QTest::newRow("open quote") << u"SELECT 'abc FROM dual"_s << u"ORA-"_s;
        QTest::newRow("another file") << u"ATTACH 'x.db' AS x"_s << u"ORA-"_s;
    }
    void hostileTexts() {
        QFETCH(QString, sql);
        QFETCH(QString, start);
        const auto session = openDemo();
        const QString failure = failureOf(*session, sql);
        QVERIFY2(failure.startsWith(start), qPrintable(failure));
        QCOMPARE(printed(*session, u"SELECT COUNT(*) FROM emp"_s).section(u'\n', 1), u"14"_s);
    }

    void tenThousandParentheses() {
        const QString open(10000, u'(');
        const QString close(10000, u')');
        QCOMPARE(printed(*openDemo(), u"SELECT "_s + open + u"1"_s + close + u" FROM dual"_s)
                     .section(u'\n', 1),
                 u"1"_s);
    }

    void aMegabyteOnOneLine() {
        constexpr int terms = 1024;
        const QString length = u"LENGTH('%1')"_s.arg(QString(1024, u'é'));
        const auto session = openDemo();
        QCOMPARE(printed(*session,
                         u"SELECT 0"_s + QString(u'+' + length).repeated(terms) + u" FROM dual"_s)
                     .section(u'\n', 1),
                 QString::number(1024 * terms));
    }

    void aCellOfTenMegabytes() {
        constexpr int literalSize = 4000;
        constexpr int literals = 2600;
        const QString literal = u"'%1'"_s.arg(QString(literalSize, u'x'));
        const auto session = openDemo();
        const auto cursor =
            session->execute(u"SELECT TO_CLOB(NULL)"_s +
                             QString(u"||"_s + literal).repeated(literals) + u" FROM dual"_s);
        CellStore rows(1);
        QCOMPARE(cursor->fetch(rows, 1), 1);
        QCOMPARE(rows.cell(0, 0).size, quint32(literalSize * literals));
    }

    void aLoneSurrogateDoesNotLoseTheRow() {
        QString sql = u"SELECT 'a?b' FROM dual"_s;
        sql[sql.indexOf(u'?')] = QChar(0xD83D);
        QCOMPARE(printed(*openDemo(), sql).section(u'\n', 1), u"a?b"_s);
    }

    void twoThousandColumns() {
        QStringList columns;
        for (int i = 0; i < 2000; ++i)
            columns << QString::number(i);
        const auto session = openDemo();
        const QString sql = u"SELECT %1 FROM dual"_s.arg(columns.join(u','));
        QCOMPARE(printed(*session, sql).section(u'\n', 1), columns.join(u'|'));
    }
};

QTEST_GUILESS_MAIN(tst_embedded_faults)
#include "tst_embedded_faults.moc"
