#include "DialogDriver.h"
#include "FavouritesTree.h"
#include "RecordingHost.h"
#include "Trace.h"
#include "TreeText.h"
#include "frmFavorites.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmFavorites : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void answers_data() {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("tree");
        QTest::newRow("OK") << u"cmdOK"_s << u"-Queries\n  my query\n"_s;
        QTest::newRow("Enter") << u"Enter"_s << u"-Queries\n  my query\n"_s;
        QTest::newRow("Cancel") << u"cmdCancel"_s << u"Queries\n"_s;
        QTest::newRow("Escape") << u"Escape"_s << u"Queries\n"_s;
        QTest::newRow("frame") << u"frame"_s << u"Queries\n"_s;
    }
    void answers() {
        QFETCH(QString, answer);
        QTemporaryDir folder;
        RecordingHost host;
        TraceLog trace;
        TreeNodes nodes;
        FavouritesTree favourites(nodes, host, trace, folder.filePath(u"Queries.dat"_s));
        DialogDriver driver;
        driver.expect(u"frmFavorites"_s, [&](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), u"Add to Favorites"_s);
            QTest::keyClicks(dialog.focusWidget(), u"my query"_s);
            if (answer == u"Enter"_s)
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
            else if (answer == u"Escape"_s)
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
            else if (answer == u"frame"_s)
                dialog.close();
            else
                QTest::mouseClick(dialog.findChild<QPushButton*>(answer), Qt::LeftButton);
        });
        Add_To_Favourites(favourites, u"/q.sql"_s, nullptr);
        QCOMPARE(driver.problems(), QStringList());
        QTEST(treeText(nodes), "tree");
        QCOMPARE(QFile::exists(folder.filePath(u"Queries.dat"_s)), nodes.count() > 1);
    }
};

QTEST_MAIN(tst_frmFavorites)
#include "tst_frmfavorites.moc"
