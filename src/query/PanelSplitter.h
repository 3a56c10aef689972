#pragma once

#include <QWidget>

// imgSplitterVertical: lies on the gap between the editor and the results, seen only while it has
// the focus. Takes the mouse for dragging, and the arrow keys.
class PanelSplitter : public QWidget {
    Q_OBJECT
public:
    explicit PanelSplitter(QWidget* form);

Q_SIGNALS:
    void pressed();
    // While it is pressed; y: the mouse's, in pixels from this upper edge.
    void moved(int y);
    void released();
    // Pixels by which the keys move it.
    void stepped(int offset);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_dragging = false;
};
