#include "Desk.h"

#include <QPlainTextEdit>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// The options file as the program meets it when it starts.
class tst_startup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void firstStartCreatesTheFile();
    void options_data();
    void options();
    void templateAndLimitReachTheQueryWindow();
    void folderThatTakesNoFile();

private:
    QString file() const { return m_home.filePath(u"Options.DAT"_s); }
    QByteArray content() const {
        QFile options(file());
        return options.open(QIODevice::ReadOnly) ? options.readAll() : QByteArray();
    }
    void write(const QByteArray& bytes) {
        QFile options(file());
        QVERIFY(options.open(QIODevice::WriteOnly));
        options.write(bytes);
    }

    QTemporaryDir m_home;
};

void tst_startup::initTestCase() {
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
}

void tst_startup::firstStartCreatesTheFile() {
    Desk desk;
    desk.start();
    QCOMPARE(content(), QByteArray("OutputResults|Grid\r\nShowResults|1\r\nShowEP|0\r\n"
                                   "QueryTemplate|\r\nRecordLimit|\r\nColourCodeScript|1\r\n"));
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.window.windowTitle(), u"Quillmate"_s);
}

void tst_startup::options_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("reported");
    QTest::newRow("a word instead of a number") << QByteArray("a|File\r\nb|x\r\nc|1") << true;
    QTest::newRow("a number too large") << QByteArray("a|Grid\r\nb|70000\r\n") << true;
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe|\n\x80|\x01\x02\r\n\n\xf0", 14) << true;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_startup::options() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, reported);
    write(bytes);
    Desk desk;
    QString trail;
    if (reported) {
        desk.dialogs.expect(u"frmError"_s, [&](QDialog& report) {
            trail = report.findChild<QLineEdit*>(u"txtSource"_s)->text();
            report.reject();
        });
    }
    desk.start();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    if (reported)
        QCOMPARE(trail, u"..MDIMain.Initialise_Form"_s);
    QCOMPARE(Options().ShowResults, qint16(1));
    QCOMPARE(content(), bytes);
    QVERIFY(desk.window.findChild<QWidget*>(u"picLeft"_s)->isVisible());
    QVERIFY(desk.window.New_Query());
}

void tst_startup::templateAndLimitReachTheQueryWindow() {
    write("a|File\r\nb|0\r\nc|1\r\nd|SELECT 1\r\ne|250 rows\r\n");
    Desk desk;
    desk.start();
    frmQuery* query = desk.window.New_Query();
    QCOMPARE(query->outputMode(), OutputMode::File);
    QVERIFY(!query->showResults() && query->showPlan());
    QCOMPARE(query->txtSQL->Text(), u"SELECT 1\r\n"_s);
    QCOMPARE(query->MaxRecords(), 250);
    QVERIFY(!query->UnSavedChanges());
}

void tst_startup::folderThatTakesNoFile() {
    // A folder in the file's place can be neither read nor replaced, whoever runs the test.
    QVERIFY(QFile::remove(file()) && QDir().mkpath(file() + u"/full"_s));
    Desk desk;
    desk.start();
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(Options().OutputResults, OutputMode::Grid);
    QVERIFY(desk.window.New_Query());
}

QTEST_MAIN(tst_startup)
#include "tst_startup.moc"
