#pragma once

#include "frmQuery.h"

#include <QMdiSubWindow>
#include <QObject>
#include <QPointer>

class QMdiArea;

// The query windows of the main window: made, numbered, activated and closed.
class QueryWindows : public QObject {
    Q_OBJECT
public:
    // area is not owned and outlives this.
    QueryWindows(QMdiArea& area, QueryServices services);

    // A new, empty, shown window; owned by the area.
    frmQuery* New_Query();
    // The active window, also while another program or a dialog has the focus; null for none.
    frmQuery* active() const;
    // Windows made since the start.
    qint32 counter() const { return m_counter; }
    // Where the splitter was moved to last, in any window; twips, 0: nowhere. New windows begin so.
    int splitterTop() const { return m_splitterTop; }
    void setSplitterTop(int top) { m_splitterTop = top; }
    // False when the window stays open.
    bool closeActive();
    // Gives every window its close request until one stays open; false when one does.
    bool closeAll();

private:
    void restoreMaximised();
    void showNormal(QMdiSubWindow& window);
    void windowActivated(QMdiSubWindow* window);

    QMdiArea& m_area;
    QueryServices m_services;
    qint32 m_counter = 0; // numbers are never used again
    int m_splitterTop = 0;
    QPointer<QMdiSubWindow> m_lastActive;
};
