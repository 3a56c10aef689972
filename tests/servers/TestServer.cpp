#include "TestServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int startMilliseconds = 60'000;
constexpr int stopMilliseconds = 20'000;
constexpr int pollMilliseconds = 50;

[[noreturn]] void fail(const QString& what, const QByteArray& output) {
    throw std::runtime_error(what.toStdString() + '\n' + output.toStdString());
}

} // namespace

TestServer::TestServer(const QString& account, const QString& group)
    : m_account(account)
    , m_group(group) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

TestServer::~TestServer() {
    stop();
    if (m_folder.isValid())
        QProcess::execute(u"rm"_s, {u"-rf"_s, m_folder.path()}); // it may belong to the account
}

void TestServer::start() {
    if (geteuid() == 0)
        run({u"chown"_s, m_account, m_folder.path()});
    m_port = freePort();
    makeData(m_folder.filePath(u"data"_s));
    launch();
    firstStart();
}

// On a busy machine the clients' processes of a killed server take a moment to go, and until then
// the next one refuses.
void TestServer::startAgain() {
    constexpr int mostTries = 20;
    for (int tries = 1;; ++tries) {
        try {
            return launch();
        } catch (const std::runtime_error&) {
            if (tries == mostTries)
                throw;
            QThread::msleep(pollMilliseconds * tries);
        }
    }
}

void TestServer::launch() {
    const QStringList command = asAccount(serverCommand(m_folder.filePath(u"data"_s)));
    m_process.setStandardOutputFile(m_folder.filePath(u"log"_s));
    m_process.start(command.first(), command.sliced(1));
    waitUntilItAnswers();
}

void TestServer::waitUntilItAnswers() {
    QElapsedTimer time;
    for (time.start(); !answers(); QThread::msleep(pollMilliseconds)) {
        m_process.waitForFinished(1);
        if (m_process.state() == QProcess::NotRunning || time.elapsed() > startMilliseconds) {
            QFile log(m_folder.filePath(u"log"_s));
            fail(u"the server does not start"_s, log.open(QFile::ReadOnly) ? log.readAll() : "");
        }
    }
}

void TestServer::stop() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    ::kill(pid_t(m_process.processId()), stopSignal());
    if (!m_process.waitForFinished(stopMilliseconds))
        kill();
}

void TestServer::kill() {
    // The clients' processes first: they would work on without their parent.
    QProcess::execute(u"pkill"_s, {u"-KILL"_s, u"-P"_s, QString::number(m_process.processId())});
    m_process.kill();
    m_process.waitForFinished(stopMilliseconds);
}

void TestServer::freeze() {
    ::kill(pid_t(m_process.processId()), SIGSTOP);
}

int TestServer::stopSignal() const {
    return SIGTERM;
}

QStringList TestServer::asAccount(const QStringList& command) const {
    if (geteuid() != 0)
        return command;
    // Not runuser, which would stay between us and the server and take our signals.
    return QStringList{u"setpriv"_s, u"--reuid"_s,       m_account, u"--regid"_s,
                       m_group,      u"--init-groups"_s, u"--"_s} +
           command;
}

QByteArray TestServer::run(const QStringList& command, const QByteArray& input) const {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(m_folder.path());
    process.start(command.first(), command.sliced(1));
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(startMilliseconds);
    const QByteArray output = process.readAll();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        fail(command.join(u' '), output);
    return output;
}

sockaddr_in loopback(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool listens(quint16 port) {
    const int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(port);
    const bool heard = connect(probe, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    return heard;
}

quint16 freePort() {
    const int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    const bool bound = bind(probe, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(probe);
    if (!bound)
        throw std::runtime_error("no free port");
    return ntohs(address.sin_port);
}

QString missingPackages(const QStringList& files, const QString& packages) {
    for (const QString& file : files) {
        if (!QFile::exists(file))
            return packages + u" are not installed (no "_s + file + u')';
    }
    return {};
}

bool odbcDriverInstalled(const QString& name) {
    QFile drivers(u"/etc/odbcinst.ini"_s);
    return drivers.open(QFile::ReadOnly) &&
           drivers.readAll().contains(QString(u'[' + name + u']').toUtf8());
}
