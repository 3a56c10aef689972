#include "Images.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double leastContrast = 3; // what a graphic needs to be told from its ground

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

// The share of the drawing's solid pixels that stand out from the ground.
double readableShare(const QPixmap& pixmap, const QColor& ground) {
    const QImage drawing = pixmap.toImage();
    int solid = 0;
    int readable = 0;
    for (int y = 0; y < drawing.height(); ++y) {
        for (int x = 0; x < drawing.width(); ++x) {
            const QColor colour = drawing.pixelColor(x, y);
            solid += colour.alpha() == 255;
            readable += colour.alpha() == 255 && contrast(colour, ground) >= leastContrast;
        }
    }
    return solid == 0 ? 0 : double(readable) / solid;
}

const char* const toolbarKeys[] = {"new",   "open",  "save", "run",     "cut",  "copy",
                                   "paste", "clear", "undo", "browser", "back", "forward"};
const char* const treeKeys[] = {"folderclosed", "table",   "view",  "column",  "index",
                                "constraint",   "trigger", "query", "sessions"};
const char* const messageKeys[] = {"exclamation", "information", "error"};

} // namespace

class tst_images : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QGuiApplication::setPalette(m_light); }
    void everyKeyIsDrawn_data();
    void everyKeyIsDrawn();
    void treeImagesByKey();
    void drawingsFollowThePalette();
    void selectedRowsOfALightGround();
    void disabledIsFainter();
    void programIconHasItsOwnColours();

private:
    const QPalette m_light{Qt::black, QColor(0xef, 0xef, 0xef)};
    const QPalette m_dark{Qt::white, QColor(0x2d, 0x2d, 0x30)};
};

void tst_images::everyKeyIsDrawn_data() {
    QTest::addColumn<QString>("name");
    const auto add = [](const char* folder, const char* key) {
        QTest::addRow("%s/%s", folder, key)
            << QString::fromLatin1("%1/%2").arg(QLatin1StringView(folder), QLatin1StringView(key));
    };
    for (const char* key : toolbarKeys)
        add("toolbar", key);
    for (const char* key : treeKeys)
        add("tree", key);
    for (const char* key : messageKeys)
        add("message", key);
}

void tst_images::everyKeyIsDrawn() {
    QFETCH(const QString, name);
    const QIcon icon = image(name);
    for (const QPalette& palette : {m_light, m_dark}) {
        QGuiApplication::setPalette(palette);
        const QColor ground = palette.color(QPalette::Window);
        // A hundred per cent and three hundred: drawn at the size, not enlarged.
        for (const int scale : {1, 3}) {
            const QPixmap pixmap = icon.pixmap(QSize(24, 24), scale);
            QCOMPARE(pixmap.size(), QSize(24, 24) * scale);
            QVERIFY2(readableShare(pixmap, ground) > 0.5, qPrintable(ground.name()));
        }
    }
    const QPalette palette = QGuiApplication::palette();
    QVERIFY(readableShare(icon.pixmap(QSize(48, 48), 1, QIcon::Selected),
                          palette.color(QPalette::Highlight)) > 0.9);
}

void tst_images::treeImagesByKey() {
    const auto images = treeImages();
    for (const char* key : treeKeys)
        QVERIFY2(!images(QString::fromLatin1(key)).isNull(), key);
    for (const QString& key : {QString(), u"nothing of the kind"_s, u"../program/quillmate2"_s})
        QVERIFY2(images(key).isNull(), qPrintable(key));
}

void tst_images::drawingsFollowThePalette() {
    const QIcon icon = image(u"toolbar/cut"_s);
    const QImage onLight = icon.pixmap(24).toImage();
    QGuiApplication::setPalette(m_dark);
    QVERIFY(icon.pixmap(24).toImage() != onLight);
    QGuiApplication::setPalette(m_light);
    QCOMPARE(icon.pixmap(24).toImage(), onLight);
}

// White drawings on the light blue of Windows' own style were nearly invisible.
void tst_images::selectedRowsOfALightGround() {
    const QIcon icon = image(u"tree/table"_s);
    const QImage normal = icon.pixmap(QSize(24, 24), 1).toImage();
    QVERIFY(icon.pixmap(QSize(24, 24), 1, QIcon::Selected).toImage() != normal);
    keepInksWhenSelected(true);
    QCOMPARE(icon.pixmap(QSize(24, 24), 1, QIcon::Selected).toImage(), normal);
    keepInksWhenSelected(false);
}

void tst_images::disabledIsFainter() {
    const QIcon icon = image(u"toolbar/save"_s);
    const auto strongest = [&](QIcon::Mode mode) {
        const QImage drawing = icon.pixmap(QSize(24, 24), 1, mode).toImage();
        int alpha = 0;
        for (int y = 0; y < drawing.height(); ++y) {
            for (int x = 0; x < drawing.width(); ++x)
                alpha = std::max(alpha, qAlpha(drawing.pixel(x, y)));
        }
        return alpha;
    };
    QVERIFY(strongest(QIcon::Disabled) > 0);
    QVERIFY(strongest(QIcon::Disabled) < strongest(QIcon::Normal) * 2 / 3);
}

void tst_images::programIconHasItsOwnColours() {
    const QImage onLight = programIcon().pixmap(64).toImage();
    QGuiApplication::setPalette(m_dark);
    QCOMPARE(programIcon().pixmap(64).toImage(), onLight);
    // In the smallest frame the feather is still told from its ground.
    const QImage small = programIcon().pixmap(16).toImage();
    QVERIFY(contrast(small.pixelColor(8, 4), small.pixelColor(3, 6)) >= leastContrast ||
            contrast(small.pixelColor(10, 5), small.pixelColor(3, 6)) >= leastContrast);
}

QTEST_MAIN(tst_images)
#include "tst_images.moc"
