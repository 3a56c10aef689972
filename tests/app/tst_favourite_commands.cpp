#include "Desk.h"
#include "LeftPanel.h"
#include "TreeText.h"
#include "TreeView.h"

#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QTabBar>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

struct FavouritesDesk : Desk {
    TreeView& tree() { return *window.findChild<TreeView*>(u"trvQueries"_s); }
    QMenu& popup() { return *window.findChild<QMenu*>(u"mnuPopup2"_s); }
    QString shown() { return treeText(tree().nodes()); }
    TreeNode& favourite(int row) { return tree().nodes().byKey(u"QUERIES"_s)->child(row); }
    QPoint placeOf(const TreeNode& node) {
        return tree().visualRect(tree().nodes().indexOf(node)).center();
    }

    void showTree() {
        auto* tabs = window.findChild<QTabBar*>(u"tabLeft"_s);
        QTest::mouseClick(tabs, Qt::LeftButton, {},
                          tabs->tabRect(int(LeftTab::Favourites)).center());
        QVERIFY(tree().isVisible());
    }
    void add(const QString& name) {
        dialogs.expect(u"frmFavorites"_s, [name](QDialog& prompt) {
            QTest::keyClicks(prompt.focusWidget(), name);
            QTest::keyClick(&prompt, Qt::Key_Return);
        });
        window.perform(UserCommand::AddToFavourites);
    }
    void expectMessage(QString& text) {
        dialogs.expect(u"msgBox"_s, [&text](QDialog& box) {
            text = dynamic_cast<QMessageBox&>(box).text();
            box.accept();
        });
    }
};

const auto problem = u"A problem was encountered whilst saving this query to favourites :"_s;

} // namespace

// The favourites on the left panel of the real main window.
class tst_favourite_commands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void addedFavouriteOpens_data();
    void addedFavouriteOpens();
    void menuComesOnFavouritesOnly();
    void unsavedQueryAsksForAFile();
    void vanishedFileIsToldAndStaysInTheList();
    void withoutAWindowNothingIsAdded();
    void missingFolderIsTold();
    void damagedFileIsToldWhenAdding();
    void treeGoesWithTheConnection();
    void refreshReadsTheFileAnew();

private:
    QString path(const QString& name) const { return m_home.filePath(name); }
    QString file() const { return path(u"Queries/Queries.dat"_s); }
    void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray content() const {
        QFile favourites(file());
        return favourites.open(QIODevice::ReadOnly) ? favourites.readAll() : QByteArray("none");
    }

    QTemporaryDir m_home;
};

void tst_favourite_commands::initTestCase() {
    qputenv("QUILLMATE_HOME", m_home.path().toLocal8Bit());
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_favourite_commands::init() {
    QVERIFY(QDir(path(u"Queries"_s)).removeRecursively());
}

void tst_favourite_commands::addedFavouriteOpens_data() {
    QTest::addColumn<QString>("way");
    QTest::newRow("double click") << u"double click"_s;
    QTest::newRow("Enter") << u"Enter"_s;
    QTest::newRow("menu") << u"menu"_s;
}

void tst_favourite_commands::addedFavouriteOpens() {
    QFETCH(QString, way);
    const QString query = QDir::toNativeSeparators(path(u"a query.sql"_s));
    FavouritesDesk desk;
    desk.startOnDemo();
    QCOMPARE(desk.shown(), u"Queries\n"_s);
    desk.query()->txtSQL->setText(u"kept"_s);
    desk.query()->setFileName(query);
    QVERIFY(desk.window.Save_File(false));
    desk.add(u"My favourite"_s);
    QCOMPARE(content(), "My favourite|"_ba + query.toUtf8() + "\r\n");
    QCOMPARE(desk.shown(), u"-Queries\n  My favourite\n"_s);

    desk.showTree();
    const QPoint place = desk.placeOf(desk.favourite(0));
    QTest::mouseClick(desk.tree().viewport(), Qt::LeftButton, {}, place);
    if (way == u"Enter"_s) {
        QTest::keyClick(&desk.tree(), Qt::Key_Return);
    } else if (way == u"menu"_s) {
        QTest::mouseClick(desk.tree().viewport(), Qt::RightButton, {}, place);
        QVERIFY(desk.popup().isVisible());
        QCOMPARE(desk.popup().actions().size(), 1);
        QTest::keyClick(&desk.popup(), Qt::Key_Down);
        QTest::keyClick(&desk.popup(), Qt::Key_Return);
    } else {
        QTest::mouseDClick(desk.tree().viewport(), Qt::LeftButton, {}, place);
    }
    QCOMPARE(desk.dialogs.problems(), QStringList());
    const QString caption = u"Query - "_s + query;
    QCOMPARE(desk.captions(), QStringList({caption, caption}));
    QCOMPARE(desk.query()->txtSQL->Text(), u"kept"_s);
    QVERIFY(!desk.query()->UnSavedChanges());
}

void tst_favourite_commands::menuComesOnFavouritesOnly() {
    FavouritesDesk desk;
    desk.startOnDemo();
    desk.query()->setFileName(u"x.sql"_s);
    desk.add(u"x"_s);
    desk.showTree();
    TreeNode& root = *desk.tree().nodes().byKey(u"QUERIES"_s);
    QTest::mouseClick(desk.tree().viewport(), Qt::RightButton, {}, desk.placeOf(root));
    QVERIFY(!desk.popup().isVisible());
    QTest::mouseDClick(desk.tree().viewport(), Qt::LeftButton, {}, desk.placeOf(root));
    desk.window.perform(UserCommand::OpenFavourite);
    QCOMPARE(desk.dialogs.problems(), QStringList()); // neither a dialog nor a message
    QCOMPARE(desk.captions().size(), 1);
}

void tst_favourite_commands::unsavedQueryAsksForAFile() {
    write(path(u"chosen.sql"_s), "chosen\r\n");
    FavouritesDesk desk;
    desk.startOnDemo();
    desk.add(u"unsaved"_s);
    QCOMPARE(content(), "unsaved|\r\n"_ba);
    desk.showTree();
    desk.tree().setSelectedItem(&desk.favourite(0));
    desk.dialogs.expect(u"dlgFile"_s, [this](QDialog& dialog) {
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path(u"chosen.sql"_s));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    QTest::keyClick(&desk.tree(), Qt::Key_Return);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.query()->txtSQL->Text(), u"chosen"_s);
}

void tst_favourite_commands::vanishedFileIsToldAndStaysInTheList() {
    FavouritesDesk desk;
    desk.startOnDemo();
    desk.query()->setFileName(path(u"gone.sql"_s));
    desk.add(u"gone"_s);
    desk.showTree();
    desk.tree().setSelectedItem(&desk.favourite(0));
    QString told;
    desk.expectMessage(told);
    QTest::keyClick(&desk.tree(), Qt::Key_Return);
    QCOMPARE(told, u"There was a problem opening the file '"_s + path(u"gone.sql"_s) +
                       u"'.  No such file or directory"_s);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(desk.shown(), u"-Queries\n  gone\n"_s);
    QCOMPARE(desk.captions().size(), 1);
}

void tst_favourite_commands::withoutAWindowNothingIsAdded() {
    FavouritesDesk desk;
    desk.start();
    QString told;
    desk.dialogs.expect(u"frmFavorites"_s,
                        [](QDialog& prompt) { QTest::keyClick(&prompt, Qt::Key_Return); });
    desk.expectMessage(told);
    desk.window.perform(UserCommand::AddToFavourites);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QCOMPARE(told, problem + u"Object variable or With block variable not set"_s);
    QCOMPARE(content(), "none"_ba);
}

void tst_favourite_commands::missingFolderIsTold() {
    FavouritesDesk desk;
    desk.start(); // makes the folder
    QVERIFY(QDir(path(u"Queries"_s)).removeRecursively());
    desk.window.New_Query();
    QString told;
    desk.dialogs.expect(u"frmFavorites"_s,
                        [](QDialog& prompt) { QTest::keyClick(&prompt, Qt::Key_Return); });
    desk.expectMessage(told);
    desk.window.perform(UserCommand::AddToFavourites);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY2(told.startsWith(problem + u"The file '"_s), qPrintable(told));
}

void tst_favourite_commands::damagedFileIsToldWhenAdding() {
    QVERIFY(QDir().mkpath(path(u"Queries"_s)));
    write(file(), "good|/a\r\nbad\r\n");
    FavouritesDesk desk;
    desk.startOnDemo(); // silently
    QCOMPARE(desk.shown(), u"Queries\n"_s);
    const QString reason =
        u"Line 2 of the file '"_s + QDir::toNativeSeparators(file()) + u"' has no \"|\"."_s;
    QVERIFY(desk.trace.text().contains(reason));
    QString told;
    desk.dialogs.expect(u"frmFavorites"_s, [](QDialog& prompt) {
        QTest::keyClicks(prompt.focusWidget(), u"new"_s);
        QTest::keyClick(&prompt, Qt::Key_Return);
    });
    desk.expectMessage(told);
    desk.window.perform(UserCommand::AddToFavourites);
    QCOMPARE(desk.dialogs.problems(), QStringList());
    QVERIFY2(told.endsWith(reason), qPrintable(told));
    QCOMPARE(content(), "good|/a\r\nbad\r\nnew|\r\n"_ba);
}

void tst_favourite_commands::treeGoesWithTheConnection() {
    QVERIFY(QDir().mkpath(path(u"Queries"_s)));
    write(file(), "a|/a\r\n");
    FavouritesDesk desk;
    desk.startOnDemo();
    QCOMPARE(desk.shown(), u"-Queries\n  a\n"_s);
    desk.window.perform(UserCommand::Disconnect);
    QCOMPARE(desk.shown(), QString());
    desk.showTree();
    desk.window.perform(UserCommand::RefreshTrees);
    QCOMPARE(desk.shown(), QString());
    desk.expectLogin(u"demo"_s, u"demo"_s, u"DEMO"_s);
    desk.window.perform(UserCommand::Connect);
    QCOMPARE(desk.shown(), u"-Queries\n  a\n"_s);
}

void tst_favourite_commands::refreshReadsTheFileAnew() {
    FavouritesDesk desk;
    desk.startOnDemo();
    desk.showTree();
    write(file(), "b|/b\r\na|/a\r\n");
    desk.entry("mnuViewRefresh")->trigger();
    QCOMPARE(desk.shown(), u"-Queries\n  a\n  b\n"_s);
    desk.tree().setSelectedItem(&desk.favourite(1));
    write(file(), "b|/b\r\na|/a\r\n0|/0\r\n");
    desk.entry("mnuViewRefresh")->trigger();
    QCOMPARE(desk.shown(), u"-Queries\n  0\n  a\n  b\n"_s);
    QCOMPARE(desk.tree().SelectedItem(), &desk.favourite(2));
}

QTEST_MAIN(tst_favourite_commands)
#include "tst_favourite_commands.moc"
