#pragma once

#include <QTimer>
#include <QWidget>

class QPlainTextEdit;
class TraceLog;

// The "Trace Log" window: shows the log as it grows, newest first. Hidden until asked for; closing
// hides it and the log goes on.
class frmTrace : public QWidget {
    Q_OBJECT
public:
    // trace is not owned and outlives the window.
    explicit frmTrace(TraceLog& trace);
    ~frmTrace() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showLog();

    TraceLog& m_trace;
    QPlainTextEdit* txtTrace;
    QTimer m_pending; // one refresh for the many entries of a run
};
