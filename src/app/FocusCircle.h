#pragma once

#include <QObject>

#include <vector>

class LeftPanel;
class QWidget;
class QueryWindows;

// F6 takes the focus from the editor to the results, the left panel and round again, Shift+F6 the
// other way. What is hidden is passed over.
class FocusCircle : public QObject {
    Q_OBJECT
public:
    // The keys work in the whole window. None is owned; all outlive this.
    FocusCircle(QWidget& window, const LeftPanel& panel, const QueryWindows& queries);

private:
    // What belongs together for these keys, and what of it gets the focus.
    struct Stop {
        const QWidget* area;
        QWidget* target;
    };
    std::vector<Stop> stops() const;
    void step(int by);

    const LeftPanel& m_panel;
    const QueryWindows& m_queries;
};
