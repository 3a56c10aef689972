#pragma once

#include "AdoConnection.h"
#include "ComThread.h"
#include "Provider.h"

#include <atomic>
#include <optional>

// A connection of ADO and the thread on which its objects live.
struct AdoLink {
    // Opens. Throws AdoFailure.
    explicit AdoLink(const QString& connectionString);
    ~AdoLink();

    // Runs the work on the thread; an AdoFailure becomes the ProviderError to throw.
    void run(const std::function<void()>& work);

    ComThread thread;
    std::optional<AdoConnection> connection; // made and destroyed on the thread
    std::atomic<bool> lost = false;
};

class AdoSession : public Session {
public:
    explicit AdoSession(std::shared_ptr<AdoLink> link)
        : m_link(std::move(link)) {}

    void expectRows(qsizetype most) override { m_mostRows = most; }
    std::unique_ptr<Cursor> execute(const QString& sql) override;
    void requestStop() noexcept override;
    bool isOpen() const override { return !m_link->lost; }

private:
    std::shared_ptr<AdoLink> m_link;
    qsizetype m_mostRows = 0;
};

// The failure as the program's windows know it.
ProviderError errorOf(const AdoFailure& failure);
