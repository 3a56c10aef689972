#include "SoftBreaks.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace {

constexpr int softBreak = QTextFormat::UserProperty + 1;
constexpr int partLength = SoftBreaks::longestBlock / 4;

QTextCharFormat softFormat() {
    QTextCharFormat format;
    format.setProperty(softBreak, true);
    return format;
}

bool endsParagraph(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator;
}

// A pair of surrogates stays together.
int placeToSplit(const QTextBlock& block, int wanted) {
    return block.text().at(wanted).isLowSurrogate() ? wanted - 1 : wanted;
}

void splitBlock(QTextCursor& cursor, int position) {
    QTextBlock block = cursor.document()->findBlock(position);
    while (block.length() > partLength + 1) {
        cursor.setPosition(block.position() + placeToSplit(block, partLength));
        cursor.insertBlock(QTextBlockFormat(), softFormat());
        block = cursor.block();
    }
}

} // namespace

bool SoftBreaks::isNeeded(const QString& text) {
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!endsParagraph(text[i]))
            continue;
        if (i - begin >= longestBlock)
            return true;
        begin = i + 1;
    }
    return text.size() - begin >= longestBlock;
}

bool SoftBreaks::continuesParagraph(const QTextBlock& block) {
    return block.position() > 0 && block.charFormat().hasProperty(softBreak);
}

QTextBlock SoftBreaks::firstOfParagraph(QTextBlock block) {
    while (continuesParagraph(block))
        block = block.previous();
    return block;
}

QTextBlock SoftBreaks::lastOfParagraph(QTextBlock block) {
    for (QTextBlock next = block.next(); next.isValid() && continuesParagraph(next);
         next = next.next())
        block = next;
    return block;
}

int SoftBreaks::count(const QTextDocument& document) {
    return countBefore(document, document.characterCount());
}

int SoftBreaks::countBefore(const QTextDocument& document, int position) {
    int found = 0;
    for (QTextBlock block = document.begin(); block.isValid() && block.position() <= position;
         block = block.next())
        found += continuesParagraph(block);
    return found;
}

int SoftBreaks::positionOf(const QTextDocument& document, int place) {
    int found = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        found += continuesParagraph(block);
        if (place + found < block.position() + block.length())
            break;
    }
    return place + found;
}

QString SoftBreaks::text(const QTextDocument& document, int begin, int end) {
    QString text;
    for (QTextBlock block = document.findBlock(begin); block.isValid() && block.position() <= end;
         block = block.next()) {
        const int at = block.position();
        if (at > begin && !continuesParagraph(block))
            text += QChar::ParagraphSeparator;
        const int from = std::max(begin - at, 0);
        text += block.text().mid(from, end - at - from);
    }
    return text;
}

void SoftBreaks::split(QTextCursor& cursor, int begin, int end) {
    const QTextDocument& document = *cursor.document();
    std::vector<int> tooLong;
    for (QTextBlock block = document.findBlock(begin); block.isValid() && block.position() <= end;
         block = block.next()) {
        if (block.length() > longestBlock)
            tooLong.push_back(block.position());
    }
    // From the end, so that the positions stay right.
    std::for_each(tooLong.rbegin(), tooLong.rend(),
                  [&](int position) { splitBlock(cursor, position); });
}

std::vector<ColourRun> SoftBreaks::runsOfPart(const std::vector<ColourRun>& runs, int begin,
                                              int length) {
    std::vector<ColourRun> part;
    auto run = std::partition_point(runs.begin(), runs.end(), [begin](const ColourRun& run) {
        return run.start + run.length <= begin;
    });
    for (; run != runs.end() && run->start < begin + length; ++run) {
        const int from = std::max(run->start, begin);
        const int to = std::min(run->start + run->length, begin + length);
        part.push_back({from - begin, to - from, run->colour});
    }
    return part;
}

void SoftBreaks::appendPart(std::vector<ColourRun>& runs, std::vector<ColourRun> part, int begin) {
    for (ColourRun run : part) {
        run.start += begin;
        const bool goesOn = !runs.empty() && runs.back().colour == run.colour &&
                            runs.back().start + runs.back().length == run.start &&
                            run.start == begin;
        if (goesOn)
            runs.back().length += run.length;
        else
            runs.push_back(run);
    }
}
