#include "Lexer.h"
#include "OraError.h"

#include <QTest>

using namespace ora;

// Tokens: one text each, with a letter for the kind where it is not plain from the text.
class tst_lexer : public QObject {
    Q_OBJECT

    static QString printed(const QByteArray& source) {
        Arena arena;
        QStringList tokens;
        try {
            for (const Token& token :
                 tokenize({source.data(), std::size_t(source.size())}, arena)) {
                static constexpr const char* kinds[] = {"", "", "\"", "#", "'", "n'", ":", "", "?"};
                if (token.kind != TokenKind::End)
                    tokens << QString::fromLatin1(kinds[int(token.kind)]) +
                                  QString::fromUtf8(token.text.data(),
                                                    qsizetype(token.text.size()));
            }
        } catch (const OraError& error) {
            return QStringLiteral("ORA-%1 at %2").arg(error.code()).arg(error.position());
        }
        return tokens.join(u' ');
    }

private Q_SLOTS:
    void tokens_data() {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("tokens");
        const auto row = [](const char* fault, const char* source, const char* tokens) {
            QTest::newRow(fault) << QByteArray(source) << QString::fromUtf8(tokens);
        };
        row("words fold, quoted names do not", "Emp \"Emp\" v$x a#1 _", "EMP \"Emp V$X A#1 ?_");
        row("letters beyond ASCII fold one for one", "größe Ünit", "GRÖßE ÜNIT");
        row("numbers take exponent and suffix", "1 1.5 .5 1e5 1.5E-3 2f 3.0d 1.",
            "#1 #1.5 #.5 #1e5 #1.5E-3 #2f #3.0d #1.");
        row("an E without digits is a name", "1e 1ex", "#1 E #1 EX");
        row("two points after a number are a range", "1..5", "#1 .. #5");
        row("doubled quotes are one", "'it''s' '' ''''", "'it's ' ''");
        row("q literals end at their own delimiter", "q'[it's]' Q'!a!b!' nq'{x}' q'''a''",
            "'it's 'a!b n'x ''a");
        row("national text", "N'x' n 'x'", "n'x N 'x");
        row("operators have one spelling", "a<>b c^=d e~=f g||h i=>j k:=l",
            "A != B C != D E != F G || H I => J K := L");
        row("comparisons may be split by blanks", "1 < = 2 > = 3 ! = 4", "#1 <= #2 >= #3 != #4");
        row("comments and hints vanish", "a/*+ hint */b--c\nd/*'*/e", "A B D E");
        row("binds", ":a : b :\"C\" :1", ":A :B :C :1");
        row("what no statement holds is told only where it stands", "a ? b", "A ?? B");
        row("an open text is told first", "a ? 'b", "ORA-1756 at 4");
        row("an open q literal", "q'[abc'", "ORA-1756 at 0");
        row("an open quoted name", "x \"abc", "ORA-1740 at 2");
        row("an empty quoted name", "\"\"", "ORA-1741 at 0");
        row("an open comment", "x /* abc", "ORA-1742 at 2");
    }
    void tokens() {
        QFETCH(QByteArray, source);
        QFETCH(QString, tokens);
        QCOMPARE(printed(source), tokens);
    }

    void longNames() {
        const QByteArray longest(128, 'x');
        QCOMPARE(printed(longest), QString::fromLatin1(longest.toUpper()));
        QCOMPARE(printed(longest + 'x'), QStringLiteral("ORA-972 at 0"));
        QCOMPARE(printed('"' + longest + "x\""), QStringLiteral("ORA-972 at 0"));
    }

    void positionsCountBytes() {
        Arena arena;
        const std::vector<Token> tokens = tokenize("'\xC3\xA4' ab", arena);
        QCOMPARE(tokens[1].begin, 5u);
        QCOMPARE(tokens[1].end, 7u);
    }
};

QTEST_APPLESS_MAIN(tst_lexer)
#include "tst_lexer.moc"
