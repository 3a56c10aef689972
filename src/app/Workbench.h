#pragma once

#include <QWidget>

class LeftPanel;
class QMdiArea;

// picVBar: the bar between the left panel and the query windows, moved with the mouse or the arrow
// keys.
class VerticalBar : public QWidget {
    Q_OBJECT
public:
    explicit VerticalBar(QWidget* parent);

Q_SIGNALS:
    // Pixels by which the bar wants to go to the right.
    void dragged(int offset);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_dragging = false;
    int m_grip = 0; // where on the bar the mouse was pressed
};

// What the main window holds between its bars: the left panel, its splitter bar, the query windows.
class Workbench : public QWidget {
    Q_OBJECT
public:
    explicit Workbench(QWidget* parent);

    LeftPanel* picLeft;
    VerticalBar* picVBar;
    QMdiArea* mdiArea;

    // Shows the left panel at its start width, or hides it with its bar.
    void Show_Browser(bool show);

    // Pixels; kept while the panel is hidden.
    int panelWidth() const { return m_panelWidth; }
    // A width that the bar could not be dragged to is ignored. When the window becomes too small
    // for it, the panel is shown narrower.
    void setPanelWidth(int width);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void moveBar(int offset);
    void layOut();

    int m_panelWidth = 0; // pixels; the bar stands there
};
