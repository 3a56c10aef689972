#include "ConnectCommands.h"

#include "ComputerName.h"
#include "frmLogin.h"
#include "modDatabase.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

enum MainPanel { ComputerPanel = 1, ServicePanel = 2, UserPanel = 3 };

} // namespace

QString computerName() {
    constexpr int bufferLength = 32;
    return systemComputerName().left(bufferLength);
}

ConnectCommands::ConnectCommands(modDatabase& database, QWidget& dialogParent)
    : m_database(database)
    , m_dialogParent(dialogParent) {}

std::optional<Logon> ConnectCommands::askForLogin() {
    frmLogin login(&m_dialogParent);
    login.txtUserId->setText(m_prefill.user);
    login.txtPassword->setText(m_prefill.password);
    login.txtServiceName->setText(m_prefill.service);
    login.exec();
    if (login.Cancelled)
        return std::nullopt;
    return Logon{login.txtUserId->text(), login.txtPassword->text(), login.txtServiceName->text()};
}

void ConnectCommands::close() {
    Q_EMIT closing();
    m_database.Close_Connection();
}

void ConnectCommands::Connect() {
    const std::optional<Logon> login = askForLogin();
    if (!login)
        return;
    close();
    UserID = login->user;
    ServiceName = login->service;
    m_database.Build_Connection_String(ServiceName, UserID, login->password);
    Q_EMIT statusChanged(ComputerPanel, computerName());
    if (!m_database.Open_Connection()) {
        Q_EMIT statusChanged(ServicePanel, QString());
        Q_EMIT statusChanged(UserPanel, QString());
        return;
    }
    Q_EMIT connectedChanged(true);
    Q_EMIT statusChanged(ServicePanel, ServiceName);
    Q_EMIT statusChanged(UserPanel, UserID);
    Q_EMIT ready();
}

void ConnectCommands::lost() {
    Q_EMIT connectedChanged(false);
    Q_EMIT statusChanged(ServicePanel, u"DISCONNECTED"_s);
    Q_EMIT statusChanged(UserPanel, QString());
}

void ConnectCommands::Disconnect() {
    Q_EMIT connectedChanged(false);
    close();
    Q_EMIT statusChanged(ServicePanel, u"DISCONNECTED"_s);
    Q_EMIT statusChanged(UserPanel, QString());
}
