#include "ServerValues.h"

#include "ProviderTable.h"
#include "SessionText.h"

#include <QMap>

using namespace Qt::StringLiterals;

void ServerValues::initTestCase() {
    if (!m_server->missing().isEmpty())
        QSKIP(qPrintable(m_server->missing()));
    m_server->start();
    m_sources.add(m_server->dataSource(u"ORCL"_s, m_server->port()));
    m_session = openedAs(u"ORCL"_s);
    for (const QString& statement : std::as_const(m_statements))
        QCOMPARE(failureOf(*m_session, statement), u"done"_s);
}

std::unique_ptr<Session> ServerValues::openedAs(const QString& dataSource) {
    return openSession({{}, dataSource, u"scott"_s, u"tiger"_s}, providerTable());
}

QStringList ServerValues::linesOf(const QString& sql) {
    return printed(*m_session, sql).split(u'\n');
}

void ServerValues::values_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("shown");
    add("text of many pieces, two bytes a character", u"SELECT repeat('ξ', 100000)"_s,
        QString(100000, u'ξ'));
    add("text of many pieces, cut within a character", u"SELECT 'x' || repeat('🎂', 70000)"_s,
        u'x' + QString(u"🎂"_s).repeated(70000));
    add("text longer than a bound cell", u"SELECT repeat('abcdefg', 700)"_s,
        QString(u"abcdefg"_s).repeated(700));
    add("empty text is not null", u"SELECT ''"_s, QString());
    add("null", u"SELECT NULL"_s, u"(null)"_s);
    add("scripts of the world",
        u"SELECT 'Ελλάδα Россия 中文 日本語 한국어 עברית عربي हिन्दी ไทย ქართული 🎂👩‍👧'"_s,
        u"Ελλάδα Россия 中文 日本語 한국어 עברית عربي हिन्दी ไทย ქართული 🎂👩‍👧"_s);
    addValues();
}

void ServerValues::values() {
    QFETCH(QString, sql);
    QFETCH(QString, shown);
    QCOMPARE(printed(*m_session, sql).section(u'\n', 1), shown);
}

// A few letters of each script that the toolkit knows.
void ServerValues::everyScriptOfTheWorld() {
    QMap<int, QString> letters;
    for (char32_t c = 1; c <= QChar::LastValidCodePoint; ++c) {
        QString& some = letters[QChar::script(c)];
        if (QChar::isLetter(c) && some.size() < 8)
            some += QChar::fromUcs4(c);
    }
    QVERIFY(letters.size() > 140);
    QStringList selected;
    for (const QString& some : std::as_const(letters))
        selected << u"SELECT "_s + QString::number(selected.size()) + u" AS n, '"_s + some +
                        u"' AS t"_s;
    const QStringList lines = linesOf(selected.join(u" UNION ALL "_s) + u" ORDER BY n"_s);
    int n = 0;
    for (const QString& some : std::as_const(letters)) {
        QCOMPARE(lines.value(n + 1), QString::number(n) + u'|' + some);
        ++n;
    }
}

void ServerValues::noStatementIsCut() {
    const QString sql = u"SELECT 1 AS n"_s + QChar(QChar::Null) + u" WHERE 1 = 0"_s;
    QCOMPARE(failureOf(*m_session, sql), u"ORA-00911 -2147217900: ORA-00911: invalid character"_s);
}
