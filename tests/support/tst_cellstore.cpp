#include "CellStore.h"

#include <QString>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void appendRow(CellStore& store, const QList<QByteArray>& cells) {
    for (const QByteArray& cell : cells)
        cell.isNull() ? store.appendNull() : store.append(cell.constData(), cell.size());
    store.endRow();
}

QByteArray read(const CellStore& store, qsizetype row, int column) {
    return store.cell(row, column).view().toByteArray();
}

} // namespace

class tst_cellstore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Sizes around the length byte's escape and the chunk size, many rows over many chunks.
    void everyCellComesBack() {
        const QList<qsizetype> sizes{0, 1, 253, 254, 255, 256, 70000, 5 * 1024 * 1024, 3};
        CellStore store(3);
        for (int round = 0; round < 3; ++round) {
            for (qsizetype size : sizes) {
                const QByteArray text(size, char('a' + round));
                appendRow(store, {text, QByteArray(), QByteArray::number(size)});
            }
        }
        QCOMPARE(store.rows(), sizes.size() * 3);
        qint64 bytes = 0;
        for (qsizetype i = 0; i < store.rows(); ++i) {
            const QByteArray text(sizes[i % sizes.size()], char('a' + i / sizes.size()));
            QVERIFY(read(store, i, 0) == text);
            QVERIFY(store.cell(i, 1).isNull);
            QVERIFY(!store.cell(i, 0).isNull); // an empty text is no null
            QCOMPARE(read(store, i, 2), QByteArray::number(text.size()));
            bytes += text.size() + read(store, i, 2).size();
        }
        QCOMPARE(store.textBytes(), bytes);
    }

    void aRowThatOutgrowsItsChunkStaysWhole() {
        constexpr int columns = 2000;
        CellStore store(columns);
        for (int row = 0; row < 40; ++row) {
            for (int column = 0; column < columns; ++column) {
                const QByteArray text = QByteArray::number(row * columns + column).repeated(20);
                store.append(text.constData(), text.size());
            }
            store.endRow();
        }
        for (int row : {0, 17, 39}) {
            CellStore::Row cells = store.row(row);
            for (int column = 0; column < columns; ++column)
                QVERIFY(cells.next().view().toByteArray() ==
                        QByteArray::number(row * columns + column).repeated(20));
        }
    }

    void shortCellsAreWrittenInPlace() {
        CellStore store(2);
        for (int i = 0; i < 100000; ++i) {
            const QByteArray digits = QByteArray::number(i);
            std::memcpy(store.shortCell(), digits.constData(), size_t(digits.size()));
            store.commit(int(digits.size()));
            store.append("x", 1);
            store.endRow();
        }
        QCOMPARE(read(store, 99999, 0), "99999");
        QCOMPARE(read(store, 54321, 1), "x");
        QCOMPARE(store.longest(0).row, 10000); // the first of the five-digit ones
        QCOMPARE(store.longest(0).characters, 5);
    }

    void theLongestTextCountsCharactersAndTheFirstWins() {
        CellStore store(2);
        QCOMPARE(store.longest(0).row, -1);
        appendRow(store, {QByteArray(), "ab"});
        appendRow(store, {"abcd", "\xC3\xA4\xC3\xB6"}); // two characters in four bytes
        appendRow(store, {"\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F", "xyz"}); // four again: a tie
        QCOMPARE(store.longest(0).row, 1);
        QCOMPARE(store.longest(0).characters, 4);
        QCOMPARE(store.longest(1).row, 2);
    }

    void aBrokenRowIsDropped() {
        CellStore store(2);
        appendRow(store, {"a", "b"});
        store.append("longer", 6);
        store.discardRow();
        appendRow(store, {"c", "d"});
        QCOMPARE(store.rows(), 2);
        QCOMPARE(read(store, 1, 0), "c");
        QCOMPARE(store.textBytes(), 4);
    }

    void rowsWithoutColumnsAreCounted() {
        CellStore store(0);
        store.endRow();
        store.endRow();
        QCOMPARE(store.rows(), 2);
    }

    void aMovedStoreLeavesAnEmptyOne() {
        CellStore store(1);
        appendRow(store, {"kept"});
        CellStore other = std::move(store);
        QCOMPARE(read(other, 0, 0), "kept");
        QCOMPARE(store.rows(), 0);
        QCOMPARE(store.columns(), 1);
        QCOMPARE(store.longest(0).row, -1);
        appendRow(store, {"new"});
        QCOMPARE(read(store, 0, 0), "new");
    }

    void rowsBehindTheReleasedOnesStay() {
        CellStore store(1);
        const QByteArray text(1000, 'x');
        for (int i = 0; i < 20000; ++i)
            appendRow(store, {text + QByteArray::number(i)});
        for (qsizetype row = 0; row < store.rows(); ++row) {
            store.releaseBefore(row);
            QVERIFY(read(store, row, 0) == text + QByteArray::number(row));
        }
    }
};

QTEST_APPLESS_MAIN(tst_cellstore)
#include "tst_cellstore.moc"
