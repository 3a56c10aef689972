#pragma once

#include "OdbcLink.h"

// A connection through the driver manager. Autocommit is on, as everywhere in the program.
class OdbcSession : public Session {
public:
    explicit OdbcSession(std::shared_ptr<OdbcLink> link)
        : m_link(std::move(link)) {}

    void expectRows(qsizetype most) override { m_mostRows = most; }
    std::unique_ptr<Cursor> execute(const QString& sql) override;
    void requestStop() noexcept override { ::requestStop(m_link); }
    bool isOpen() const override { return !m_link->lost; }

private:
    std::unique_ptr<Cursor> executePlainly(const QString& sql);

    std::shared_ptr<OdbcLink> m_link;
    qsizetype m_mostRows = 0;
};
