#include "FavouritesFile.h"

#include "AtomicFile.h"

#include <QFile>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
const auto lineEnd = "\r\n"_ba;

QString decoded(QByteArrayView line) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(line);
    return utf8.hasError() ? QString::fromLatin1(line) : text;
}

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

ColQueryFiles readFavourites(const QString& path) {
    ColQueryFiles favourites;
    try {
        for (const QByteArray& bytes : linesOf(contentOf(path))) {
            const QString line = decoded(bytes);
            const qsizetype bar = line.indexOf(u'|');
            if (bar < 0)
                return {};
            favourites.Add(line.left(bar), line.sliced(bar + 1));
        }
    } catch (const Error&) {
        return {}; // no file is no fault: there are no favourites yet
    }
    return favourites;
}

void appendFavourite(const QString& path, const QString& QueryName, const QString& FileName) {
    QByteArray content = QFile::exists(path) ? contentOf(path) : QByteArray();
    if (!content.isEmpty() && !content.endsWith('\n'))
        content += lineEnd; // a file edited by hand
    content += (QueryName + u'|' + FileName).toUtf8() + lineEnd;
    Write_Whole_File(path, content);
}
