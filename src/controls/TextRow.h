#pragma once

#include <QByteArrayView>
#include <QFont>
#include <QPalette>
#include <QString>
#include <QTextLayout>

#include <memory>

class QPainter;

// The type in which a text view shows its rows.
struct TextType {
    explicit TextType(const QFont& font);

    QFont font;
    int lineHeight;
    double ascent;
    double charWidth;   // of an ASCII character
    bool fixedPitch;    // all ASCII characters are as wide
    double tabDistance; // eight characters
};

// One row as shown: measured, hit and painted. Positions are bytes from the row's beginning. A row
// of plain ASCII in a fixed-pitch type needs no text layout, which makes long rows cheap.
class TextRow {
public:
    // utf8 must stay valid as long as this.
    TextRow(QByteArrayView utf8, const TextType& type);
    ~TextRow();

    double width() const;
    double xOf(qsizetype byte) const;
    // The caret position nearest to x.
    qsizetype byteAt(double x) const;
    // The next caret position; stays at the row's ends.
    qsizetype next(qsizetype byte) const;
    qsizetype previous(qsizetype byte) const;
    // The word, or the run of blanks, around the position.
    std::pair<qsizetype, qsizetype> wordAt(qsizetype byte) const;

    // Paints what lies between the x positions from and to. at: the row's top left. selBegin and
    // selEnd: the selected bytes, equal when there are none.
    void paint(QPainter& painter, QPointF at, double from, double to, const QPalette& palette,
               qsizetype selBegin, qsizetype selEnd) const;

private:
    QString shown() const;
    qsizetype columnOf(qsizetype byte) const;
    void paintCells(QPainter& painter, QPointF at, double from, double to, const QPalette& palette,
                    qsizetype selBegin, qsizetype selEnd) const;
    void paintLayout(QPainter& painter, QPointF at, const QPalette& palette, qsizetype selBegin,
                     qsizetype selEnd) const;

    QByteArrayView m_utf8;
    const TextType& m_type;
    bool m_tabs;
    std::unique_ptr<QTextLayout> m_layout; // null for a row of equal cells
};
