#include "AtomicFile.h"
#include "Error.h"
#include "FileSizeLimit.h"
#include "Options.h"
#include "Trace.h"
#include "modFunctions.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

QString describe(const OptionsRecord& o) {
    return u"%1/%2/%3/%4/%5/%6"_s.arg(o.OutputResults)
        .arg(o.ShowResults)
        .arg(o.ShowEP)
        .arg(o.QueryTemplate)
        .arg(o.RecordLimit)
        .arg(o.ColourCodeScript);
}

const QByteArray defaultFile =
    "OutputResults|Grid\r\nShowResults|1\r\nShowEP|0\r\nQueryTemplate|\r\n"
    "RecordLimit|\r\nColourCodeScript|1\r\n";

} // namespace

class tst_settings : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

private Q_SLOTS:
    void firstStartWritesTheDefaults() {
        OptionsRecord options;
        Load_Options(options, path("first.dat"));
        QCOMPARE(read(path("first.dat")), defaultFile);
        QCOMPARE(describe(options), u"Grid/1/0//0/1"_s);
    }

    void loadsByPosition_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("record");
        QTest::newRow("keys in another order")
            << QByteArray("ShowEP|0\r\nShowResults|0\r\nx|1\r\n") << u"0/0/1/old/7/0"_s;
        QTest::newRow("a line without a bar is the value")
            << QByteArray("File\r\n0\r\n1\r\nselect\r\n") << u"File/0/1/select/7/0"_s;
        QTest::newRow("only the first bar divides")
            << QByteArray("a|Grid\r\nb|1\r\nc|1\r\nd|x || y\r\n") << u"Grid/1/1/x || y/7/0"_s;
        QTest::newRow("a template's line break shifts the rest")
            << QByteArray("a|Grid\r\nb|1\r\nc|1\r\nd|one\r\ntwo\r\nRecordLimit|5\r\nz|1\r\n")
            << u"Grid/1/1/one/0/5"_s;
        QTest::newRow("a word behind the limit")
            << QByteArray("a|Grid\r\nb|1\r\nc|1\r\nd|\r\ne|250 rows\r\nf|yes\r\n")
            << u"Grid/1/1//250/0"_s;
        QTest::newRow("an empty limit")
            << QByteArray("a|Grid\r\nb|1\r\nc|1\r\nd|\r\ne|\r\nf|1") << u"Grid/1/1//0/1"_s;
        QTest::newRow("an empty file leaves all") << QByteArray() << u"File/0/1/old/7/0"_s;
        QTest::newRow("lines that end in LF alone")
            << QByteArray("a|Grid\nb|1\nc|0\nd|t\ne|3\nf|1\n") << u"Grid/1/0/t/3/1"_s;
        QTest::newRow("further lines are ignored") << defaultFile + "More|things\r\n"
                                                   << u"Grid/1/0//0/1"_s;
    }
    void loadsByPosition() {
        QFETCH(QByteArray, file);
        QFETCH(QString, record);
        write(path("by-position.dat"), file);
        OptionsRecord options{OutputMode::File, 0, 1, u"old"_s, 7, 0};
        Load_Options(options, path("by-position.dat"));
        QCOMPARE(describe(options), record);
        QCOMPARE(read(path("by-position.dat")), file);
    }

    void badValuesAreReportedAndTheRestIsLoaded_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("record");
        QTest::addColumn<int>("number");
        QTest::newRow("a word on line 2")
            << QByteArray("a|File\r\nb|yes\r\nc|1\r\nd|t\r\ne|9\r\nf|0\r\n") << u"File/1/1/t/9/0"_s
            << int(Error::TypeMismatch);
        QTest::newRow("nothing on line 3")
            << QByteArray("a|File\r\nb|0\r\nc|\r\nd|t\r\ne|9\r\nf|0\r\n") << u"File/0/0/t/9/0"_s
            << int(Error::TypeMismatch);
        QTest::newRow("too large for line 2") << QByteArray("a|File\r\nb|40000\r\nc|1\r\nd|t\r\n")
                                              << u"File/1/1/t/0/1"_s << int(Error::Overflow);
        QTest::newRow("binary") << QByteArray("\x00\xff\x01\r\n\x80\r\n\xfe\r\n", 11)
                                << QString::fromUtf8(QByteArray("\x00\xff\x01", 3)) + u"/1/0//0/1"_s
                                << int(Error::TypeMismatch);
    }
    void badValuesAreReportedAndTheRestIsLoaded() {
        QFETCH(QByteArray, file);
        QFETCH(QString, record);
        QFETCH(int, number);
        write(path("bad.dat"), file);
        OptionsRecord options;
        try {
            Load_Options(options, path("bad.dat"));
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.number(), number);
        }
        QCOMPARE(describe(options), record);
        QCOMPARE(read(path("bad.dat")), file);
    }

    void aFolderThatCannotBeWrittenKeepsTheDefaults() {
        OptionsRecord options;
        write(path("plain-file"), "x");
        Load_Options(options, path("plain-file") + u"/Options.DAT"_s);
        QCOMPARE(describe(options), u"Grid/1/0//0/1"_s);
        QVERIFY_THROWS_EXCEPTION(Error,
                                 Save_Options(options, path("plain-file") + u"/Options.DAT"_s));
    }

    void savedOptionsComeBack() {
        const OptionsRecord saved{OutputMode::Text, 0, 1, u"-- Größe \U0001F600"_s, 250, 0};
        Save_Options(saved, path("saved.dat"));
        OptionsRecord loaded;
        Load_Options(loaded, path("saved.dat"));
        QCOMPARE(describe(loaded), describe(saved));
    }

    void unreadableIsMinusOne() {
        QVERIFY(isUnreadable(Read_Whole_File(path("no-such-file"))));
        QVERIFY(isUnreadable(Read_Whole_File(m_folder.path()))); // a folder
        write(path("minus-one"), "-1");
        QVERIFY(isUnreadable(Read_Whole_File(path("minus-one"))));
        write(path("bytes"), QByteArray("\xff\x00z", 3));
        QCOMPARE(Read_Whole_File(path("bytes")), QByteArray("\xff\x00z", 3));
    }

    void digitFilterSwallowsTheRest() {
        for (const QChar typed : u"0123456789\b"_s)
            QCOMPARE(Digit_Filter(typed.unicode()), typed.unicode());
        for (const QChar typed : u"a-./: \r\u0664"_s)
            QCOMPARE(Digit_Filter(typed.unicode()), u'\0');
    }

    void aFailedWriteLeavesTheOldFile_data() {
        QTest::addColumn<int>("bytes");
        QTest::newRow("more than a buffer") << 5'000'000;
        QTest::newRow("less than a buffer") << 1001;
    }
    void aFailedWriteLeavesTheOldFile() {
#ifdef Q_OS_UNIX
        QFETCH(int, bytes);
        write(path("precious"), "old");
        {
            const FileSizeLimit fullDisk(1000);
            QVERIFY_THROWS_EXCEPTION(Error,
                                     Write_Whole_File(path("precious"), QByteArray(bytes, 'x')));
        }
        QCOMPARE(read(path("precious")), QByteArray("old"));
        QCOMPARE(QDir(m_folder.path()).entryList({u"precious*"_s}).size(), 1); // nothing left over
        QVERIFY_THROWS_EXCEPTION(Error, Write_Whole_File(path("gone/file"), "x"));
#endif
    }

    void newestTraceStandsFirst() {
        TraceLog trace;
        int heard = 0;
        trace.setListener([&] { ++heard; });
        trace.Trace(u"select 1"_s);
        trace.Trace(u"<SUCCESS>"_s);
        QCOMPARE(trace.text(), u"<SUCCESS>\r\n\r\nselect 1\r\n\r\n"_s);
        QCOMPARE(heard, 2);
    }
};

QTEST_APPLESS_MAIN(tst_settings)
#include "tst_settings.moc"
