#pragma once

#include "StatementWatch.h"

#include <QObject>

#include <functional>

// Keeps the program alive while a statement runs: windows repaint and the seconds are shown, but no
// key, click or close reaches them. Esc asks the server to stop the statement.
class StatementPatience : public QObject, public StatementWatch {
    Q_OBJECT
public:
    // showProgress: gets the line to show, and an empty one when the statement is over.
    using ShowProgress = std::function<void(const QString&)>;
    explicit StatementPatience(ShowProgress showProgress)
        : m_showProgress(std::move(showProgress)) {}

    void began() override;
    bool wait(std::chrono::milliseconds elapsed) override;
    void ended() noexcept override;
    void connectionLost() override { Q_EMIT lost(); }

Q_SIGNALS:
    void lost();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ShowProgress m_showProgress;
    qint64 m_shownSecond = 0;
    bool m_stopAsked = false;
};
