#include "WindowPlace.h"

#include "AtomicFile.h"
#include "modFunctions.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int leastSide = 100;
constexpr int largestNumber = 100000; // beyond every desktop

using Numbers = QHash<QString, int>;

// Nothing when a line is none of ours: half a file is not better than no file.
std::optional<Numbers> numbersIn(const QString& text) {
    Numbers numbers;
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const qsizetype bar = line.indexOf(u'|');
        bool isNumber = false;
        const int value = QStringView(line).mid(bar + 1).trimmed().toInt(&isNumber);
        if (bar < 0 || !isNumber || std::abs(qint64(value)) > largestNumber)
            return std::nullopt;
        numbers.insert(line.left(bar), value);
    }
    return numbers;
}

QString lineOf(QLatin1StringView key, int value) {
    return key + u'|' + QString::number(value) + u"\r\n"_s;
}

qint64 areaOf(const QRect& rect) {
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

} // namespace

std::optional<WindowPlace> Load_Window_Place(const QString& path) {
    const QByteArray content = Read_Whole_File(path);
    if (isUnreadable(content))
        return std::nullopt;
    const std::optional<Numbers> numbers = numbersIn(QString::fromUtf8(content));
    if (!numbers)
        return std::nullopt;
    const auto number = [&](QLatin1StringView key) { return numbers->value(key); };
    const WindowPlace place{
        QRect(number("Left"_L1), number("Top"_L1), number("Width"_L1), number("Height"_L1)),
        number("Maximized"_L1) == 1, std::max(0, number("PanelWidth"_L1)),
        std::max(0, number("SplitterTop"_L1))};
    if (place.window.width() < leastSide || place.window.height() < leastSide)
        return std::nullopt;
    return place;
}

void Save_Window_Place(const WindowPlace& place, const QString& path) {
    const QString text =
        lineOf("Left"_L1, place.window.x()) + lineOf("Top"_L1, place.window.y()) +
        lineOf("Width"_L1, place.window.width()) + lineOf("Height"_L1, place.window.height()) +
        lineOf("Maximized"_L1, place.maximised ? 1 : 0) +
        lineOf("PanelWidth"_L1, place.panelWidth) + lineOf("SplitterTop"_L1, place.splitterTop);
    Write_Whole_File(path, text.toUtf8());
}

std::optional<QRect> placeOnScreens(const QRect& window, const QList<QRect>& screens) {
    const auto seenOn = [&](const QRect& screen) { return areaOf(screen & window); };
    const auto best =
        std::max_element(screens.begin(), screens.end(),
                         [&](const QRect& a, const QRect& b) { return seenOn(a) < seenOn(b); });
    constexpr qint64 leastSeen = qint64(leastSide) * leastSide;
    if (best == screens.end() || seenOn(*best) < leastSeen)
        return std::nullopt;
    QRect place(window.topLeft(), window.size().boundedTo(best->size()));
    place.moveLeft(std::clamp(place.x(), best->x(), best->right() + 1 - place.width()));
    place.moveTop(std::clamp(place.y(), best->y(), best->bottom() + 1 - place.height()));
    return place;
}
