#include "Command.h"
#include "Error.h"
#include "FileSizeLimit.h"
#include "RecordingHost.h"
#include "RecordingWindow.h"
#include "Recordset.h"
#include "ResultOutput.h"
#include "RunState.h"
#include "ScriptedServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_output : public QObject {
    Q_OBJECT

private:
    struct Fixture {
        RecordingHost host;
        RecordingWindow window{host.log};
        ScriptedServer server{host.log};
        std::unique_ptr<Connection> connection = server.connection();
        RunState state;
        Recordset recordset;

        Recordset* open(ScriptedAnswer answer) {
            server.answers[u"q"_s] = std::move(answer);
            if (connection->State() != ObjectState::Open)
                connection->Open();
            recordset.Open({connection.get(), CommandTypeEnum::Text, u"q"_s});
            host.log.clear();
            return &recordset;
        }
    };

    static QByteArray content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "missing"_ba;
    }

private Q_SLOTS:
    void grid() {
        Fixture f;
        Load_Recordset_Into_Grid(
            f.open({{u"ID"_s, u"NAME"_s}, {{"1"_ba, "Łódź"_ba}, {std::nullopt, "ab"_ba}}, {}, -1}),
            f.window.resultGridData, true, f.window, f.state);
        QCOMPARE(gridText(f.window.resultGridData), u"|ID|NAME\n1|1|Łódź\n2||ab"_s);
        QCOMPARE(f.state.recordCount, u"2"_s);
        QCOMPARE(f.window.resultGridData.ColWidth(0), 500); // one digit and the margin
        QCOMPARE(f.window.resultGridData.ColWidth(2), 800); // characters, not bytes
        QVERIFY(f.window.resultGridData.Redraw());

        // The next statement's rows replace them, also when it has fewer rows and columns.
        Load_Recordset_Into_Grid(f.open({{u"X"_s}, {}, {}, -1}), f.window.resultGridData, true,
                                 f.window, f.state);
        QCOMPARE(gridText(f.window.resultGridData), u"|X"_s);
        QCOMPARE(f.state.recordCount, u"0"_s);
    }

    void planLoadSizesTheResultGrid() {
        Fixture f;
        f.window.resultGridData.setText(0, 0, u"abc"_s);
        Load_Recordset_Into_Grid(f.open({{u"PLAN"_s}, {{"long text"_ba}}, {}, -1}),
                                 f.window.planGridData, false, f.window, f.state);
        QCOMPARE(gridText(f.window.planGridData), u"|PLAN\n1|long text"_s);
        QCOMPARE(f.window.planGridData.ColWidth(1), -1);
        QCOMPARE(f.window.resultGridData.ColWidth(0), 700);
        QCOMPARE(f.state.recordCount, QString());
    }

    void nothingIsIgnored() {
        Fixture f;
        Load_Recordset_Into_Grid(nullptr, f.window.resultGridData, true, f.window, f.state);
        Load_Recordset_Into_Text(nullptr, u",", f.window);
        Load_RecordSet_Into_File(nullptr, u",", f.window, f.host, f.state);
        QCOMPARE(f.host.log, QStringList());
    }

    void text_data() {
        QTest::addColumn<QStringList>("columns");
        QTest::addColumn<QList<QStringList>>("rows"); // "NULL" is a null
        QTest::addColumn<QByteArray>("text");
        using Rows = QList<QStringList>;
        QTest::newRow("no rows") << QStringList{u"A"_s, u"B"_s} << Rows{} << "A,B\r\n"_ba;
        QTest::newRow("first name untrimmed, values trimmed of blanks only")
            << QStringList{u" A "_s, u" B "_s} << Rows{{u"  x "_s, u" \ty  "_s}}
            << " A ,B\r\nx,\ty\r\n"_ba;
        QTest::newRow("nothing is quoted")
            << QStringList{u"A"_s, u"B"_s} << Rows{{u"a,b"_s, u"\"q\"\r\nz"_s}}
            << "A,B\r\na,b,\"q\"\r\nz\r\n"_ba;
        QTest::newRow("a later null is empty")
            << QStringList{u"A"_s, u"B"_s, u"C"_s} << Rows{{u"1"_s, u"NULL"_s, u"3"_s}}
            << "A,B,C\r\n1,,3\r\n"_ba;
        QTest::newRow("only blanks and other alphabets")
            << QStringList{u"Ä"_s, QString()} << Rows{{u"   "_s, u"日本"_s}}
            << "Ä,\r\n,日本\r\n"_ba;
    }
    void text() {
        QFETCH(QStringList, columns);
        QFETCH(QList<QStringList>, rows);
        ScriptedAnswer answer{columns, {}, {}, -1};
        for (const QStringList& row : rows) {
            answer.rows.emplace_back();
            for (const QString& cell : row)
                answer.rows.back().push_back(cell == u"NULL"_s ? std::nullopt
                                                               : std::optional(cell.toUtf8()));
        }
        Fixture f;
        Load_Recordset_Into_Text(f.open(answer), u",", f.window);
        QTEST(f.window.resultText, "text");
    }

    void nullInTheFirstColumn() {
        Fixture f;
        try {
            Load_RecordSet_Into_File(f.open({{u"A"_s}, {{"1"_ba}, {std::nullopt}}, {}, -1}), u",",
                                     f.window, f.host, f.state);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.number(), 94);
            QCOMPARE(error.description(), u"Invalid use of Null"_s);
            QCOMPARE(error.source(), u"..MDIMain.Load_RecordSet_Into_File"_s);
        }
        QCOMPARE(f.host.log, QStringList()); // no dialog was shown
    }

    // Rows that fill many blocks, a cell larger than a block and a chunk, very many columns.
    void largeText() {
        Fixture f;
        const QByteArray huge(10'000'000, 'h');
        ScriptedAnswer answer{{u"A"_s, u"B"_s}, {}, {}, -1};
        QByteArray expected = "A,B\r\n";
        for (int row = 0; row < 20'000; ++row) {
            const QByteArray number = QByteArray::number(row);
            const QByteArray second = row == 700 ? huge : QByteArray(row % 90, 'x');
            answer.rows.push_back({number, second});
            expected += number + ',' + second + "\r\n";
        }
        Load_Recordset_Into_Text(f.open(answer), u",", f.window);
        QVERIFY(f.window.resultText == expected);
        QTemporaryDir folder;
        f.host.saveFiles = {folder.filePath(u"r.txt"_s)};
        Load_RecordSet_Into_File(f.open(answer), u",", f.window, f.host, f.state);
        QVERIFY(content(folder.filePath(u"r.txt"_s)) == expected);

        ScriptedAnswer wide;
        wide.rows.emplace_back();
        for (int column = 0; column < 2000; ++column) {
            wide.columns << u"C%1"_s.arg(column);
            wide.rows[0].push_back(QByteArray::number(column));
        }
        Load_Recordset_Into_Text(f.open(wide), u", ", f.window);
        QVERIFY(f.window.resultText.endsWith("1998, 1999\r\n"));
        Load_Recordset_Into_Grid(f.open(wide), f.window.resultGridData, true, f.window, f.state);
        QCOMPARE(f.window.resultGridData.Cols(), 2001);
        QCOMPARE(f.window.resultGridData.text(1, 2000), "1999"_ba);
        QCOMPARE(f.window.resultGridData.ColWidth(2000), 900); // its name, "C1999"
    }

    void file() {
        Fixture f;
        QTemporaryDir folder;
        const QString path = folder.filePath(u"r.txt"_s);
        f.host.saveFiles = {path};
        Load_RecordSet_Into_File(f.open({{u"A"_s}, {{"1"_ba}, {"2"_ba}}, {}, -1}), u",", f.window,
                                 f.host, f.state);
        QCOMPARE(content(path), "A\r\n1\r\n2\r\n"_ba);
        QCOMPARE(f.host.log,
                 (QStringList{u"save dialog .sql Text File (*.txt)|*.txt|Microsoft Excel File "
                              "(*.xls)|*.xls|All Files (*.*)|*.* asks"_s,
                              u"status 2 \"2 rows\""_s}));
        QCOMPARE(f.state.fileProblem, QString());
        QCOMPARE(f.state.recordCount, QString()); // the grid's count, which the file's leaves alone
    }

    void failedSaveIsSilent_data() {
        QTest::addColumn<bool>("cancelled");
        QTest::addColumn<int>("diskBytes"); // -1: the folder is missing
        QTest::newRow("cancelled") << true << -1;
        QTest::newRow("folder is missing") << false << -1;
        QTest::newRow("disk is full") << false << 50'000;
        QTest::newRow("disk becomes full while rows come") << false << 1'500'000;
    }
    void failedSaveIsSilent() {
        QFETCH(bool, cancelled);
        QFETCH(int, diskBytes);
        const bool diskFull = diskBytes > 0;
        Fixture f;
        QTemporaryDir folder;
        const QString path = folder.filePath(diskFull ? u"r.txt"_s : u"missing/r.txt"_s);
        if (!cancelled)
            f.host.saveFiles = {path};
        const std::vector<std::optional<QByteArray>> row{QByteArray(100'000, 'x')};
        f.open({{u"A"_s}, {30, row}, {}, -1});
        {
            std::optional<FileSizeLimit> limit;
            if (diskFull)
                limit.emplace(diskBytes);
            Load_RecordSet_Into_File(&f.recordset, u",", f.window, f.host, f.state);
        }
        QCOMPARE(content(path), "missing"_ba);
        QCOMPARE(f.host.log.last(), u"status 2 \"30 rows\""_s);
        QCOMPARE(f.state.fileProblem.isEmpty(), cancelled);
    }
};

QTEST_GUILESS_MAIN(tst_output)
#include "tst_output.moc"
