#include "CellStore.h"
#include "OracleDate.h"
#include "OracleNumber.h"
#include "SqliteDatabase.h"
#include "TypedCells.h"

#include <QRandomGenerator>
#include <QTest>

#include <string>

using namespace Qt::StringLiterals;
using ora::OracleDate;
using ora::OracleNumber;
using ora::SqlType;

// Result values on their short way into cells, beside the long way.
class tst_typed_cells : public QObject {
    Q_OBJECT

private:
    SqliteDatabase m_db{":memory:", SqliteDatabase::Mode::Create};

    std::string cell(SqlType type, std::string_view bytes) {
        SqliteStatement statement = m_db.prepare("SELECT ?1");
        if (ora::familyOf(type) == ora::TypeFamily::Text)
            statement.bind(1, bytes);
        else
            statement.bindBlob(1, bytes);
        statement.step();
        CellStore rows(1);
        ora::cellWriter(type)(rows, sqlite3_column_value(statement.get(), 0), {type});
        rows.endRow();
        const Cell written = rows.cell(0, 0);
        return {written.data, written.size};
    }

private Q_SLOTS:
    void numbers() {
        QRandomGenerator random(1);
        constexpr int trials = 20000;
        for (int i = 0; i < trials; ++i) {
            std::string digits = std::to_string(random.generate64());
            digits.resize(size_t(random.bounded(1, int(digits.size()) + 1)));
            const std::string text = (random.bounded(4) == 0 ? "-" : "") + digits + 'e' +
                                     std::to_string(random.bounded(-25, 10));
            const OracleNumber number = OracleNumber::parse(text).value();
            QCOMPARE(cell(SqlType::Number, number.bytes()), number.cellText());
        }
    }

    void dates() {
        QRandomGenerator random(2);
        constexpr int trials = 5000;
        for (int i = 0; i < trials; ++i) {
            const bool midnight = random.bounded(4) == 0;
            const OracleDate date = OracleDate::fromDayAndSeconds(
                random.bounded(int(OracleDate::MinDayNumber), int(OracleDate::MaxDayNumber)),
                midnight ? 0 : random.bounded(int(OracleDate::SecondsPerDay)), 0);
            QCOMPARE(cell(SqlType::Date, date.encoded()), date.cellText());
        }
    }

    void textsOfEveryLength() {
        constexpr int longest = 300;
        for (int size = 1; size <= longest; ++size) {
            std::string text;
            for (int i = 0; i < size; ++i)
                text += char('a' + i % 26);
            QCOMPARE(cell(SqlType::Varchar2, text), text);
            const std::string accented = text + "\xc3\xa9" + text;
            QCOMPARE(cell(SqlType::Varchar2, accented), accented);
        }
    }

    void nulls() {
        for (const SqlType type : {SqlType::Number, SqlType::Date, SqlType::Varchar2, SqlType::Raw,
                                   SqlType::BinaryDouble, SqlType::IntervalDayToSecond}) {
            SqliteStatement statement = m_db.prepare("SELECT NULL");
            statement.step();
            CellStore rows(1);
            ora::cellWriter(type)(rows, sqlite3_column_value(statement.get(), 0), {type});
            rows.endRow();
            QVERIFY(rows.cell(0, 0).isNull);
        }
    }

    // A damaged file shows something and ends nothing.
    void damagedNumbers() {
        QRandomGenerator random(3);
        constexpr int trials = 5000;
        for (int i = 0; i < trials; ++i) {
            std::string bytes;
            for (int left = random.bounded(1, 25); left > 0; --left)
                bytes += char(random.bounded(256));
            cell(SqlType::Number, bytes);
            cell(SqlType::Date, bytes);
        }
        QVERIFY(!cell(SqlType::Number, "\xc2\x65\xff").empty());
    }
};

QTEST_GUILESS_MAIN(tst_typed_cells)
#include "tst_typed_cells.moc"
