#include "FavouritesFile.h"

#include "AtomicFile.h"
#include "TextEncoding.h"

#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
const auto lineEnd = "\r\n"_ba;
const QRegularExpression lineBreak(u"[\r\n]+"_s);

// Without their ends; an end behind the last line begins no other.
QList<QByteArray> linesOf(QByteArray content) {
    if (content.startsWith(byteOrderMark))
        content.remove(0, byteOrderMark.size());
    content.replace("\r\n", "\n").replace('\r', '\n');
    if (content.endsWith('\n'))
        content.chop(1);
    else if (content.isEmpty())
        return {};
    return content.split('\n');
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(Error::PathFileAccess, QString(),
                    u"The file '%1' cannot be read: %2"_s.arg(path, file.errorString()));
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Error(Error::PathFileAccess, QString(),
                    u"The file '%1' cannot be read: %2"_s.arg(path, file.errorString()));
    return content;
}

} // namespace

FavouritesRead readFavourites(const QString& path) {
    if (!QFile::exists(path))
        return {};
    FavouritesRead read;
    try {
        qsizetype number = 0;
        for (const QByteArray& bytes : linesOf(contentOf(path))) {
            const QString line = decodeText(bytes).text;
            const qsizetype bar = line.indexOf(u'|');
            ++number;
            if (bar < 0)
                return {{}, u"Line %1 of the file '%2' has no \"|\"."_s.arg(number).arg(path)};
            read.favourites.Add(line.left(bar), line.sliced(bar + 1));
        }
    } catch (const Error& error) {
        return {{}, error.description()};
    }
    return read;
}

void appendFavourite(const QString& path, const QString& QueryName, const QString& FileName) {
    if (FileName.contains(lineBreak))
        throw Error(Error::PathFileAccess, QString(),
                    u"A file whose name holds a line end cannot be a favourite."_s);
    QString name = QueryName;
    name.replace(lineBreak, u" "_s);
    QByteArray content = QFile::exists(path) ? contentOf(path) : QByteArray();
    if (!content.isEmpty() && !content.endsWith('\n'))
        content += lineEnd; // a file edited by hand
    content += (name + u'|' + FileName).toUtf8() + lineEnd;
    Write_Whole_File(path, content);
}
