#include "ChmFile.h"
#include "HelpBook.h"
#include "MenuTable.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QtEndian>

#include <set>

using namespace Qt::StringLiterals;

namespace {

const QString helpPath = QString::fromLatin1(HELP_FILE);

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString text(const HelpBook& book, const QString& page) {
    return QString::fromUtf8(book.file(page));
}

QStringList captures(const QString& html, const QString& pattern) {
    QStringList all;
    QRegularExpressionMatchIterator found = QRegularExpression(pattern).globalMatch(html);
    while (found.hasNext())
        all << found.next().captured(1);
    return all;
}

// Everything that a reader does with a book; what it gives does not matter.
qsizetype readEverything(const QString& path) {
    const std::unique_ptr<HelpBook> book = HelpBook::open(path);
    if (!book)
        return -1;
    qsizetype size = 0;
    for (const HelpEntry& entry : book->contents())
        size += book->file(entry.page).size();
    return size + qsizetype(book->search(u"semicolon"_s).size());
}

} // namespace

class tst_helpbook : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void readsContentsAndIndex();
    void everyLinkLeadsSomewhere();
    void everyMenuEntryIsDescribed();
    void search_data();
    void search();
    void sitemapsOfOthers_data();
    void sitemapsOfOthers();
    void plainTextOfAPage();
    void notAHelpFile_data();
    void notAHelpFile();
    void damagedFiles_data();
    void damagedFiles();

private:
    QString write(const QByteArray& bytes) {
        const QString path = m_folder.filePath(u"DAMAGED.CHM"_s);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
        return path;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<HelpBook> m_book;
};

void tst_helpbook::initTestCase() {
    m_book = HelpBook::open(helpPath);
    QVERIFY(m_book);
}

void tst_helpbook::readsContentsAndIndex() {
    QCOMPARE(m_book->firstPage(), u"/index.htm"_s);
    const auto& contents = m_book->contents();
    QCOMPARE(contents[0], (HelpEntry{u"Welcome to Quillmate"_s, u"/index.htm"_s, 0}));
    const auto editor = std::find(contents.begin(), contents.end(),
                                  HelpEntry{u"The editor"_s, u"/editor.htm"_s, 1});
    QVERIFY(editor != contents.end());
    QStringList titles;
    for (const HelpEntry& entry : m_book->index())
        titles << entry.title.toLower();
    QVERIFY(titles.contains(u"semicolon"_s));
    QStringList sorted = titles;
    sorted.sort();
    QCOMPARE(titles, sorted);
}

void tst_helpbook::everyLinkLeadsSomewhere() {
    QSet<QString> pages;
    for (const auto* list : {&m_book->contents(), &m_book->index()}) {
        for (const HelpEntry& entry : *list) {
            QVERIFY2(!m_book->file(entry.page).isEmpty(), qPrintable(entry.page));
            pages << entry.page;
        }
    }
    QCOMPARE(pages.size(), qsizetype(m_book->contents().size()));
    for (const QString& page : pages) {
        const QStringList links = captures(text(*m_book, page), u"(?:href|src)=\"([^\"]+)\""_s);
        QVERIFY(!links.isEmpty());
        for (const QString& link : links)
            QVERIFY2(!m_book->file(u'/' + link).isEmpty(), qPrintable(page + u" -> "_s + link));
    }
}

void tst_helpbook::everyMenuEntryIsDescribed() {
    const QString menus = plainText(text(*m_book, u"/menus.htm"_s));
    const QString keys = plainText(text(*m_book, u"/keys.htm"_s));
    for (const MenuEntry& entry : menuTable()) {
        const QString caption = QString(entry.caption).remove(u'&');
        QVERIFY2(menus.contains(caption), qPrintable(caption));
        QVERIFY2(menus.contains(QString(entry.shortcut)), entry.shortcut.data());
        QVERIFY2(keys.contains(QString(entry.shortcut)), entry.shortcut.data());
    }
}

void tst_helpbook::search_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("first"); // page; empty: nothing is found
    QTest::newRow("a word of the title") << u"editor"_s << u"/editor.htm"_s;
    QTest::newRow("other case") << u"SEMICOLON"_s << u"/running.htm"_s;
    QTest::newRow("beginning of a word") << u"semico"_s << u"/running.htm"_s;
    QTest::newRow("two words on one page") << u"tilde backslash"_s << u"/editor.htm"_s;
    QTest::newRow("words that no page holds both") << u"cardinality qqq"_s << QString();
    QTest::newRow("end of a word") << u"emicolon"_s << QString();
    QTest::newRow("signs of patterns") << u"( [ * \\ +"_s << QString();
    QTest::newRow("markup is no text") << u"href"_s << QString();
    QTest::newRow("nothing") << u"  "_s << QString();
}

void tst_helpbook::search() {
    QFETCH(const QString, words);
    QFETCH(const QString, first);
    const std::vector<HelpBook::Match> found = m_book->search(words);
    if (first.isEmpty()) {
        QVERIFY(found.empty());
        return;
    }
    QVERIFY(!found.empty());
    const bool isFound = std::any_of(found.begin(), found.end(), [&](const HelpBook::Match& match) {
        return match.page == first &&
               match.excerpt.contains(words.section(u' ', 0, 0), Qt::CaseInsensitive);
    });
    QVERIFY(isFound);
    if (words == u"editor")
        QCOMPARE(found[0].page, first);
}

void tst_helpbook::sitemapsOfOthers_data() {
    QTest::addColumn<QString>("html");
    QTest::addColumn<QStringList>("lines");
    const auto object = [](const QString& name, const QString& local) {
        return u"<LI> <OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"%1\">"
               "<param name=\"Local\" value=\"%2\"></OBJECT>"_s.arg(name, local);
    };
    QTest::newRow("entities") << u"<ul>"_s + object(u"a &amp; &lt;b&gt;"_s, u"a.htm"_s)
                              << QStringList(u"0 a & <b> /a.htm"_s);
    QTest::newRow("a heading without a page")
        << u"<ul>"_s + object(u"h"_s, {}) + u"<ul>"_s + object(u"p"_s, u"p.htm"_s)
        << QStringList({u"0 h "_s, u"1 p /p.htm"_s});
    QTest::newRow("deeper than its parent")
        << u"<ul><ul><ul>"_s + object(u"a"_s, u"a"_s) << QStringList(u"0 a /a"_s);
    QTest::newRow("closed too often")
        << u"</ul></ul><ul>"_s + object(u"a"_s, u"a"_s) << QStringList(u"0 a /a"_s);
    QTest::newRow("cut off") << u"<ul>"_s + object(u"a"_s, u"a"_s).chopped(4) << QStringList();
    QTest::newRow("not HTML") << u"\x01<<>< param=\"\" <ul <ul"_s << QStringList();
}

void tst_helpbook::sitemapsOfOthers() {
    QFETCH(const QString, html);
    QFETCH(const QStringList, lines);
    QStringList read;
    for (const HelpEntry& entry : readSitemap(html))
        read << u"%1 %2 %3"_s.arg(entry.level).arg(entry.title, entry.page);
    QCOMPARE(read, lines);
}

void tst_helpbook::plainTextOfAPage() {
    QCOMPARE(
        plainText(u"<head><title>x</title></head><p>a<b>b</b>c</p><p>&lt;d&gt; &amp;lt;</p>"_s),
        u"abc <d> &lt;"_s);
}

void tst_helpbook::notAHelpFile_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = bytesOf(helpPath);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("This is no help file. ").repeated(100);
    QTest::newRow("the signature alone") << QByteArray("ITSF").leftJustified(4096, '\0');
    QTest::newRow("zeros") << QByteArray(whole.size(), '\0');
    QTest::newRow("first half") << whole.first(whole.size() / 2);
    QTest::newRow("header alone") << whole.first(0xcc);
    QByteArray endless = whole;
    qToLittleEndian<quint32>(0xffffffff, endless.data() + 0x48);
    QTest::newRow("directory beyond the end") << endless;
    // The library divides by this one.
    QByteArray noBlocks = whole;
    const QByteArray blockSize("\x00\x80\x00\x00\x00\x00\x00\x00", 8);
    const qsizetype place = whole.lastIndexOf(blockSize, whole.indexOf("LZXC") + 400);
    QVERIFY(place > 0);
    noBlocks.replace(place, 8, QByteArray(8, '\0'));
    QTest::newRow("blocks of no size") << noBlocks;
}

void tst_helpbook::notAHelpFile() {
    QFETCH(const QByteArray, bytes);
    QVERIFY(!HelpBook::open(write(bytes)));
    QVERIFY(!HelpBook::open(m_folder.filePath(u"missing.chm"_s)));
    QVERIFY(!HelpBook::open(m_folder.path()));
}

void tst_helpbook::damagedFiles_data() {
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 8; ++seed)
        QTest::addRow("seed %d", seed) << seed;
}

// Bytes that flipped on a disk: whatever they hit, the program goes on.
void tst_helpbook::damagedFiles() {
    QFETCH(const int, seed);
    QRandomGenerator random{quint32(seed)};
    const QByteArray whole = bytesOf(helpPath);
    constexpr int variants = 20;
    constexpr int headers = 0x200;
    for (int i = 0; i < variants; ++i) {
        QByteArray damaged = whole;
        const int hits = random.bounded(1, 9);
        for (int hit = 0; hit < hits; ++hit) {
            const int range = hit % 2 == 0 ? headers : int(whole.size());
            damaged[random.bounded(range)] = char(random.bounded(256));
        }
        if (i % 5 == 0)
            damaged.truncate(random.bounded(int(whole.size())));
        readEverything(write(damaged));
    }
    QVERIFY(readEverything(write(whole)) > 10000);
}

QTEST_GUILESS_MAIN(tst_helpbook)
#include "tst_helpbook.moc"
