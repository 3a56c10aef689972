#include "QueryText.h"

#include "AtomicFile.h"
#include "modFunctions.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

// Empty when nothing is known that speaks against reading it.
QString problemBefore(const QFileInfo& file) {
    if (file.isDir())
        return u"It is a folder."_s;
    if (file.exists() && !file.isFile())
        return u"It is a device, not a file."_s; // reading one may never end
    constexpr qint64 million = 1'000'000;
    if (file.size() > largestQueryFile)
        return u"It has %1 MB, and a query window takes at most %2 MB. "
               "Such a script can be run with quillmate-console."_s.arg(file.size() / million)
                   .arg(largestQueryFile / million);
    return QString();
}

QString problemOfReading(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && (file.readAll(), file.error() == QFile::NoError))
        return u"A file that holds nothing but \"-1\" cannot be opened."_s; // the failure marker
    return file.errorString();
}

void dropLastLineEnd(QString& text) {
    if (text.endsWith(u'\n'))
        text.chop(text.endsWith("\r\n"_L1) ? 2 : 1);
    else if (text.endsWith(u'\r'))
        text.chop(1);
}

} // namespace

QueryText readQueryText(const QString& path) {
    QueryText query;
    query.problem = problemBefore(QFileInfo(path));
    if (!query.problem.isEmpty())
        return query;
    const QByteArray content = Read_Whole_File(path);
    if (isUnreadable(content)) {
        query.problem = problemOfReading(path);
        return query;
    }
    DecodedText decoded = decodeText(content);
    if (decoded.text.contains(QChar::Null)) {
        query.problem = u"It is not a text file: it holds a NUL character."_s;
        return query;
    }
    query.text = std::move(decoded.text);
    query.encoding = decoded.encoding;
    dropLastLineEnd(query.text);
    return query;
}

TextEncoding writeQueryText(const QString& path, const QString& text, TextEncoding wanted) {
    const EncodedText encoded = encodeText(text + u"\r\n"_s, wanted);
    Write_Whole_File(path, encoded.bytes);
    return encoded.encoding;
}
