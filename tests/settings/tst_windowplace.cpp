#include "Error.h"
#include "WindowPlace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_windowplace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void comesBackAsItWasSaved();
    void damagedFiles_data();
    void damagedFiles();
    void everyCutOfTheFile();
    void folderThatTakesNoFile();
    void screens_data();
    void screens();

private:
    QString file() const { return m_folder.filePath(u"Window.DAT"_s); }
    void write(const QByteArray& bytes) {
        QFile file(this->file());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir m_folder;
};

void tst_windowplace::comesBackAsItWasSaved() {
    const WindowPlace place{QRect(-1200, 30, 1000, 700), true, 300, 250};
    Save_Window_Place(place, file());
    QCOMPARE(Load_Window_Place(file()), std::optional(place));
}

void tst_windowplace::damagedFiles_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = "Left|1\r\nTop|1\r\nWidth|800\r\nHeight|600\r\n";
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff|\x01\n|\xf0\x80", 9);
    QTest::newRow("a word") << whole + "PanelWidth|wide\r\n";
    QTest::newRow("a line without a bar") << whole + "PanelWidth\r\n";
    QTest::newRow("number beyond the type") << whole + "PanelWidth|99999999999999999999\r\n";
    QTest::newRow("number beyond any screen") << whole + "Width|2147483647\r\n";
    QTest::newRow("least number of the type") << whole + "Left|-2147483648\r\n";
    QTest::newRow("no size") << QByteArray("Left|1\r\nTop|1\r\nMaximized|1\r\n");
    QTest::newRow("size of a stamp") << whole + "Width|3\r\n";
}

void tst_windowplace::damagedFiles() {
    QFETCH(const QByteArray, bytes);
    write(bytes);
    QVERIFY(!Load_Window_Place(file()));
}

void tst_windowplace::everyCutOfTheFile() {
    Save_Window_Place({QRect(5, 6, 800, 600), false, 300, 0}, file());
    QFile saved(file());
    QVERIFY(saved.open(QIODevice::ReadOnly));
    const QByteArray whole = saved.readAll();
    saved.close();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        write(whole.first(size));
        const std::optional<WindowPlace> place = Load_Window_Place(file());
        if (place) {
            QVERIFY(place->window.width() >= 100 && place->window.height() >= 60);
            QVERIFY(place->window.width() <= 800 && place->window.height() <= 600);
        }
    }
}

void tst_windowplace::folderThatTakesNoFile() {
    QFile::remove(file());
    QVERIFY(QDir().mkpath(file() + u"/full"_s));
    QVERIFY(!Load_Window_Place(file()));
    QVERIFY_THROWS_EXCEPTION(Error, Save_Window_Place({}, file()));
    QVERIFY(QDir(file()).removeRecursively());
}

void tst_windowplace::screens_data() {
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QRect>("place"); // empty: nowhere
    QTest::newRow("within the first") << QRect(10, 10, 800, 600) << QRect(10, 10, 800, 600);
    QTest::newRow("on the second") << QRect(-1500, 40, 700, 500) << QRect(-1500, 40, 700, 500);
    QTest::newRow("mostly on the second") << QRect(-500, 10, 700, 600) << QRect(-700, 10, 700, 600);
    QTest::newRow("its screen is gone") << QRect(3000, 10, 800, 600) << QRect();
    QTest::newRow("a corner is left") << QRect(1270, 790, 800, 600) << QRect();
    QTest::newRow("title bar above the screen")
        << QRect(10, -300, 800, 600) << QRect(10, 0, 800, 600);
    QTest::newRow("larger than the screen") << QRect(-2, -2, 5000, 4000) << QRect(0, 0, 1280, 800);
}

void tst_windowplace::screens() {
    QFETCH(const QRect, window);
    QFETCH(const QRect, place);
    const QList<QRect> desktop{QRect(0, 0, 1280, 800), QRect(-1600, 0, 1600, 900)};
    QCOMPARE(placeOnScreens(window, desktop).value_or(QRect()), place);
    QVERIFY(!placeOnScreens(window, {}));
}

QTEST_GUILESS_MAIN(tst_windowplace)
#include "tst_windowplace.moc"
