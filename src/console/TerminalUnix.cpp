#include "Terminal.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

class ControllingTerminal : public Terminal {
public:
    ControllingTerminal()
        : m_fd(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {
        if (m_fd < 0 || tcgetattr(m_fd, &m_before) != 0)
            return;
        termios silent = m_before;
        silent.c_lflag &= ~tcflag_t(ECHO | ICANON | ISIG);
        silent.c_cc[VMIN] = 1;
        silent.c_cc[VTIME] = 0;
        m_isOpen = tcsetattr(m_fd, TCSAFLUSH, &silent) == 0;
    }
    ~ControllingTerminal() override {
        if (m_isOpen)
            tcsetattr(m_fd, TCSAFLUSH, &m_before);
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Q_DISABLE_COPY_MOVE(ControllingTerminal)

    bool isOpen() const { return m_isOpen; }

    void write(const QString& text) override {
        const QByteArray bytes = text.toLocal8Bit();
        [[maybe_unused]] const auto written =
            ::write(m_fd, bytes.constData(), size_t(bytes.size()));
    }

    QByteArray read() override {
        char byte;
        return ::read(m_fd, &byte, 1) == 1 ? QByteArray(1, byte) : QByteArray();
    }

private:
    int m_fd;
    termios m_before{};
    bool m_isOpen = false;
};

} // namespace

std::unique_ptr<Terminal> Terminal::open() {
    auto terminal = std::make_unique<ControllingTerminal>();
    return terminal->isOpen() ? std::move(terminal) : nullptr;
}
