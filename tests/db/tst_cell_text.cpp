#include "CellStore.h"
#include "CellText.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

template<typename Append>
QByteArray cellOf(Append append) {
    CellStore rows(1);
    append(rows);
    rows.endRow();
    return rows.cell(0, 0).view().toByteArray();
}

} // namespace

class tst_cell_text : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void reals_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("whole") << 5437.0 << QByteArray("5437");
        QTest::newRow("negative zero") << -0.0 << QByteArray("0");
        QTest::newRow("cents") << -12.05 << QByteArray("-12.05");
        QTest::newRow("below one") << 0.5 << QByteArray("0.5");
        QTest::newRow("noise of a sum") << 0.1 + 0.2 << QByteArray("0.30000000000000004");
        QTest::newRow("large") << 1e22 << QByteArray("10000000000000000000000");
        QTest::newRow("beyond whole doubles")
            << 9007199254740993.0 << QByteArray("9007199254740992");
        QTest::newRow("tiny") << 1e-7 << QByteArray("0.0000001");
        QTest::newRow("infinite") << -std::numeric_limits<double>::infinity() << QByteArray("-Inf");
    }
    void reals() {
        QFETCH(double, value);
        QTEST(cellOf([&](CellStore& rows) { appendReal(rows, value); }), "text");
    }
    void everyRealReadsBack() {
        for (const double value :
             {std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
              1.0 / 3, 123456.789, 9999999999.9999, 0.00015, 1e10 - 0.0001, 4.35}) {
            const QByteArray text = cellOf([&](CellStore& rows) { appendReal(rows, value); });
            QCOMPARE(text.toDouble(), value);
            QVERIFY(!text.contains('e'));
        }
    }
    void dates_data() {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QByteArray>("shown");
        QTest::newRow("midnight") << QByteArray("2026-11-21 00:00:00") << QByteArray("2026-11-21");
        QTest::newRow("time") << QByteArray("2026-11-21 14:05:09")
                              << QByteArray("2026-11-21 14:05:09");
        QTest::newRow("zero fraction at midnight")
            << QByteArray("2026-11-21 00:00:00.000") << QByteArray("2026-11-21");
        QTest::newRow("fraction") << QByteArray("2026-11-21 00:00:00.120")
                                  << QByteArray("2026-11-21 00:00:00.12");
        QTest::newRow("no date at all") << QByteArray("soon") << QByteArray("soon");
    }
    void dates() {
        QFETCH(QByteArray, stored);
        QTEST(cellOf([&](CellStore& rows) {
                  appendDateText(rows, {stored.constData(), size_t(stored.size())});
              }),
              "shown");
    }
    void bytesThatAreNoUtf8AreReplaced() {
        const auto shown = [](std::string_view bytes) {
            return cellOf([&](CellStore& rows) { appendText(rows, bytes); });
        };
        QCOMPARE(shown("abc\xff"
                       "def"),
                 QByteArray("abc\xef\xbf\xbd"
                            "def"));
        QCOMPARE(shown("\xc3"), QByteArray("\xef\xbf\xbd"));
        QCOMPARE(shown("na\xc3\xafve 12345678"), QByteArray("na\xc3\xafve 12345678"));
        QCOMPARE(shown(std::string_view("a\0b", 3)), QByteArray("a\0b", 3));
    }
};

QTEST_GUILESS_MAIN(tst_cell_text)
#include "tst_cell_text.moc"
