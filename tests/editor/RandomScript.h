#pragma once

#include "KeywordTables.h"

#include <QRandomGenerator>
#include <QStringList>

// Pieces of SQL in which everything that colouring looks for meets everything else.
inline QString randomPiece(QRandomGenerator& random) {
    static const QStringList pieces = [] {
        QStringList all;
        for (const KeywordTable& table : keywordTables())
            for (const KeywordSlot& slot : table.words)
                if (!slot.search.isEmpty())
                    all << slot.display[0] << slot.display[1] << slot.display[2];
        for (const QString& text : operatorTexts())
            all << text << text.toLower();
        for (const char16_t c : {u'\\', u'{', u'}', u'~', u'\t', u'(', u',', u'\'', u'h', u'X',
                                 u'é', u'日', u'\u017f', u'\u212a', u'1', u'-'})
            all << QString(QChar(c));
        all << QStringLiteral("{\\cf2 ") << QStringLiteral("\\par ") << QStringLiteral("😀");
        return all;
    }();
    QString piece = pieces[random.bounded(int(pieces.size()))];
    if (random.bounded(4) == 0)
        piece = piece.mid(random.bounded(int(piece.size())));
    return piece + (random.bounded(2) == 0 ? QStringLiteral(" ") : QString());
}

inline QString randomScript(QRandomGenerator& random, int pieces) {
    QString text;
    for (int i = 0; i < pieces; ++i)
        text += random.bounded(6) == 0 ? QStringLiteral("\r\n") : randomPiece(random);
    return text;
}
