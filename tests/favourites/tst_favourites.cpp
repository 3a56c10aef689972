#include "FavouritesFile.h"
#include "FavouritesTree.h"
#include "FileSizeLimit.h"
#include "RecordingHost.h"
#include "Trace.h"
#include "TreeText.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Favourites {
    QTemporaryDir folder;
    QString path = folder.filePath(u"Queries.dat"_s);
    RecordingHost host;
    TreeNodes nodes;
    TraceLog trace;
    FavouritesTree tree{nodes, host, trace, path};

    void write(const QByteArray& content) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray content() {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
};

const auto problem =
    u"msgbox[ok!] A problem was encountered whilst saving this query to favourites :"_s;

} // namespace

class tst_Favourites : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void files_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("favourites");
        QTest::newRow("no lines") << ""_ba << u""_s;
        QTest::newRow("in the order of the file") << "b|/b\r\na|/a\r\n"_ba << u"b=/b;a=/a"_s;
        QTest::newRow("twice") << "a|/a\r\na|/a\r\n"_ba << u"a=/a;a=/a"_s;
        QTest::newRow("a name with a bar") << "a|b|/c\r\n"_ba << u"a=b|/c"_s;
        QTest::newRow("empty name, empty file") << "|\r\n"_ba << u"="_s;
        QTest::newRow("no line end at the end") << "a|/a\r\nb|/b"_ba << u"a=/a;b=/b"_s;
        QTest::newRow("other line ends") << "a|/a\nb|/b\n"_ba << u"a=/a;b=/b"_s;
        QTest::newRow("a blank line spoils all") << "a|/a\r\n\r\n"_ba << u""_s;
        QTest::newRow("a line without a bar spoils all") << "a|/a\r\nb\r\nc|/c\r\n"_ba << u""_s;
        QTest::newRow("mark of the encoding") << "\xEF\xBB\xBF"
                                                 "a|/a\r\n"_ba
                                              << u"a=/a"_s;
        QTest::newRow("of an older program")
            << "\x80|/\xE9\r\n\xC3\xA9|/x\r\n"_ba << u"€=/é;é=/x"_s;
        QTest::newRow("of an older program, a letter that looks cut off")
            << "a|/\xE9"_ba << u"a=/é"_s;
    }
    void files() {
        QFETCH(QByteArray, content);
        Favourites f;
        f.write(content);
        QStringList favourites;
        const ColQueryFiles read = f.tree.Load_Query_Files();
        for (const CQueryFile& favourite : read)
            favourites << favourite.QueryName() + u'=' + favourite.FileName();
        QTEST(favourites.join(u';'), "favourites");
    }

    void theTreeIsSortedAndOpen() {
        Favourites f;
        f.write("beta|/1\r\nAlpha|/2\r\nbeta|/0\r\nalpha2|/3\r\n");
        f.tree.Initialise_Query_Tree();
        QCOMPARE(treeText(f.nodes, true), u"-Queries|QUERIES|folderclosed|\n"
                                          "  Alpha||query|/2\n  alpha2||query|/3\n"
                                          "  beta||query|/1\n  beta||query|/0\n"_s);
        const TreeNode* root = f.nodes.byKey(u"QUERIES"_s);
        QCOMPARE(FavouritesTree::fileOf(root), std::nullopt);
        QCOMPARE(FavouritesTree::fileOf(nullptr), std::nullopt);
        QCOMPARE(FavouritesTree::fileOf(&root->child(0)), u"/2"_s);
    }

    void withoutAFileTheRootIsAlone() {
        Favourites f;
        f.tree.Initialise_Query_Tree();
        QCOMPARE(treeText(f.nodes), u"Queries\n"_s);
        QVERIFY(f.host.log.isEmpty());
    }

    void adding() {
        Favourites f;
        f.write("\xE9|/old");
        f.tree.addFavourite(u" né "_s, u"/new"_s);
        f.tree.addFavourite(u"unsaved"_s, u""_s);
        QCOMPARE(f.content(), "\xE9|/old\r\n n\xC3\xA9 |/new\r\nunsaved|\r\n"_ba);
        QCOMPARE(f.nodes.count(), 4);
        QVERIFY(f.host.log.isEmpty());
    }

    void failuresTellAndLeaveTheTree() {
        Favourites f;
        f.write("a|/a\r\n");
        f.tree.Initialise_Query_Tree();
        const TreeNode* before = &f.nodes.byKey(u"QUERIES"_s)->child(0);
        f.tree.addFavourite(u"x"_s, std::nullopt);
        QCOMPARE(f.host.log.takeLast(),
                 problem + u"Object variable or With block variable not set"_s);
#ifdef Q_OS_UNIX
        {
            const FileSizeLimit full(8);
            f.tree.addFavourite(u"x"_s, u"/x"_s);
        }
        QVERIFY(f.host.log.takeLast().startsWith(problem + u"The file '"_s));
        QCOMPARE(f.content(), "a|/a\r\n"_ba);
#endif
        FavouritesTree elsewhere(f.nodes, f.host, f.trace,
                                 f.folder.filePath(u"gone/Queries.dat"_s));
        elsewhere.addFavourite(u"x"_s, u"/x"_s);
        QVERIFY(f.host.log.takeLast().startsWith(problem));
        QCOMPARE(&f.nodes.byKey(u"QUERIES"_s)->child(0), before);
    }

    void lineEndsDoNotBreakTheFile() {
        Favourites f;
        f.tree.addFavourite(u"two\r\nlines\n"_s, u"/a"_s);
        QCOMPARE(f.content(), "two lines |/a\r\n"_ba);
        f.tree.addFavourite(u"x"_s, u"/a\nb"_s);
        QVERIFY(f.host.log.takeLast().startsWith(problem));
        QCOMPARE(f.content(), "two lines |/a\r\n"_ba);
    }

    void aDamagedFileIsToldWhenAdding() {
        Favourites f;
        f.write("a|/a\r\n\r\n");
        f.tree.Initialise_Query_Tree();
        QVERIFY(f.host.log.isEmpty());
        QVERIFY(f.trace.text().contains(u"Line 2 of the file '"_s + f.path));
        f.tree.addFavourite(u"b"_s, u"/b"_s);
        QCOMPARE(f.content(), "a|/a\r\n\r\nb|/b\r\n"_ba);
        QVERIFY(f.host.log.takeLast().contains(u"The favorite was saved"_s));
    }

    void aFileThatCannotBeReadIsNotReplaced() {
        QTemporaryDir folder;
        QVERIFY_THROWS_EXCEPTION(Error, appendFavourite(folder.path(), u"a"_s, u"b"_s));
        QVERIFY(QFileInfo(folder.path()).isDir());
    }

    void theCollection() {
        ColQueryFiles files;
        files.Add(u"first"_s, u"/1"_s, u"K"_s);
        files.Add(u"second"_s, u"/2"_s);
        QCOMPARE(files.Item(2).FileName(), u"/2"_s);
        QCOMPARE(files.Item(u"k"_s).QueryName(), u"first"_s);
        files.Remove(1);
        QCOMPARE(files.Count(), 1);
        QVERIFY_THROWS_EXCEPTION(Error, files.Item(2));
        QVERIFY_THROWS_EXCEPTION(Error, files.Item(u"k"_s));
    }
};

QTEST_APPLESS_MAIN(tst_Favourites)
#include "tst_favourites.moc"
