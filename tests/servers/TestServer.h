#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <netinet/in.h>

// A database server of this test's own: its data in a temporary folder, listening on loopback, gone
// with the object.
class TestServer {
public:
    virtual ~TestServer();

    // Why it cannot run here, naming the packages; empty when it can.
    virtual QString missing() const = 0;
    // Makes the data folder and starts; throws std::runtime_error with the server's own words.
    void start();
    // Starts again on the same data after kill() or stop().
    void startAgain();
    void stop(); // as its operator would
    void kill(); // as a power cut would
    // It takes connections and answers nothing, until kill().
    void freeze();

    quint16 port() const { return m_port; }
    // A section of odbc.ini through which it is reached on the port.
    virtual QString dataSource(const QString& name, quint16 port) const = 0;

protected:
    TestServer(const QString& account, const QString& group);

    virtual void makeData(const QString& folder) = 0;
    virtual QStringList serverCommand(const QString& folder) const = 0;
    virtual bool answers() const = 0;
    virtual void firstStart() {}
    // Ends the server at once, with its clients' statements.
    virtual int stopSignal() const;

    // Runs to the end, as the server's account when this is root; throws with its output on
    // failure.
    QByteArray run(const QStringList& command, const QByteArray& input = {}) const;
    QStringList asAccount(const QStringList& command) const;

private:
    void launch();
    void waitUntilItAnswers();

    QString m_account, m_group; // servers refuse to run as root
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};

// The socket address of a loopback port.
sockaddr_in loopback(quint16 port);
// A loopback port that nobody listens on.
quint16 freePort();

// Whether somebody listens on the loopback port.
bool listens(quint16 port);

// "" when all files exist, else "PACKAGES are not installed".
QString missingPackages(const QStringList& files, const QString& packages);
// Whether the ODBC manager knows a driver of that name.
bool odbcDriverInstalled(const QString& name);
