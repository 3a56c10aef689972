#pragma once

#include <QApplication>
#include <QDialog>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>

// Answers the modal dialogs of real windows: waits for each expected one by its object name, in
// order, and acts on it. A dialog that nobody expected is written down and dismissed, so that a
// test fails instead of hanging.
class DialogDriver : public QObject {
public:
    using Act = std::function<void(QDialog&)>;

    DialogDriver() {
        constexpr int pollInterval = 5;
        m_poll.start(pollInterval);
        connect(&m_poll, &QTimer::timeout, this, [this] { look(); });
    }

    void expect(const QString& name, Act act) { m_expected.push_back({name, std::move(act)}); }

    // Empty when every expected dialog came and no other.
    QStringList problems() const {
        QStringList all = m_unexpected;
        for (const auto& [name, act] : m_expected)
            all << QStringLiteral("%1 did not come").arg(name);
        return all;
    }

private:
    void look() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible() || waitsForAnswered(dialog))
            return;
        m_answered = dialog;
        m_patience = 200; // polls
        if (!m_expected.empty() && m_expected.front().first == dialog->objectName()) {
            const Act act = std::move(m_expected.front().second);
            m_expected.pop_front();
            connect(dialog, &QObject::destroyed, this, [this] { m_answered = nullptr; });
            // From an event of its own: the poll goes on while the act opens further dialogs.
            QTimer::singleShot(0, dialog, [act, dialog] { act(*dialog); });
            return;
        }
        m_unexpected << QStringLiteral("unexpected %1 '%2'")
                            .arg(dialog->objectName(), dialog->windowTitle());
        m_answered = nullptr;
        dialog->reject();
    }

    // An act that failed half-way leaves its dialog open.
    bool waitsForAnswered(const QDialog* dialog) {
        return dialog == m_answered && m_patience-- > 0;
    }

    QTimer m_poll;
    int m_patience = 0;
    QObject* m_answered = nullptr;
    std::deque<std::pair<QString, Act>> m_expected;
    QStringList m_unexpected;
};
