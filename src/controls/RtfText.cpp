#include "RtfText.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace {

void writeCharacter(QString& rtf, QChar c) {
    if (c == u'\\' || c == u'{' || c == u'}')
        rtf += u'\\';
    if (c == u'\t')
        rtf += "\\tab "_L1;
    else if (c >= u' ' && c <= u'~')
        rtf += c;
    else
        rtf += "\\u"_L1 + QString::number(qint16(c.unicode())) + u'?';
}

QString colourTable(const QList<quint32>& colours) {
    const auto part = [](quint32 bits) { return QString::number(bits & 0xff); };
    QString table = u"{\\colortbl;"_s;
    for (const quint32 colour : colours)
        table += "\\red"_L1 + part(colour >> 16) + "\\green"_L1 + part(colour >> 8) + "\\blue"_L1 +
                 part(colour) + u';';
    return table + u'}';
}

QString writeParagraph(const RtfParagraph& paragraph, const QList<quint32>& colours) {
    QString rtf;
    int at = 0;
    const auto upTo = [&](int end) {
        for (; at < end; ++at)
            writeCharacter(rtf, paragraph.text.at(at));
    };
    for (const ColourRun& run : paragraph.runs) {
        upTo(run.start);
        rtf += u"{\\cf"_s + QString::number(colours.indexOf(run.colour) + 1) + u' ';
        upTo(run.start + run.length);
        rtf += u'}';
    }
    upTo(int(paragraph.text.size()));
    return rtf + u"\\par\n"_s;
}

} // namespace

std::vector<RtfParagraph> plainParagraphs(QStringView text) {
    std::vector<RtfParagraph> paragraphs(1);
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != u'\r' && text[i] != u'\n')
            continue;
        paragraphs.back().text = text.sliced(begin, i - begin).toString();
        if (i == text.size())
            break;
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        begin = i + 1;
        paragraphs.emplace_back();
    }
    return paragraphs;
}

QString writeRtf(const std::vector<RtfParagraph>& paragraphs) {
    QList<quint32> colours;
    QString body;
    for (const RtfParagraph& paragraph : paragraphs) {
        for (const ColourRun& run : paragraph.runs)
            if (!colours.contains(run.colour))
                colours.append(run.colour);
        body += writeParagraph(paragraph, colours);
    }
    return u"{\\rtf1\\ansi\\deff0"_s + colourTable(colours) + u"{\\cf0 "_s + body + u"}}"_s;
}
