#include "TerminalPassword.h"

#include <QByteArray>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>
#endif

namespace {

constexpr char interrupt = 0x03;
constexpr char endOfInput = 0x04;
constexpr char backspace = 0x08;
constexpr char killLine = 0x15;
constexpr char erase = 0x7f;

#ifdef Q_OS_WIN

// The console's input and output, without echo and line editing while it lives.
class Terminal {
public:
    Terminal()
        : m_in(open(L"CONIN$"))
        , m_out(open(L"CONOUT$")) {
        m_isOpen = GetConsoleMode(m_in, &m_mode) &&
                   SetConsoleMode(m_in, m_mode & ~DWORD(ENABLE_ECHO_INPUT | ENABLE_LINE_INPUT |
                                                        ENABLE_PROCESSED_INPUT));
    }
    ~Terminal() {
        if (m_isOpen)
            SetConsoleMode(m_in, m_mode);
        CloseHandle(m_in);
        CloseHandle(m_out);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    bool isOpen() const { return m_isOpen; }
    void write(const QString& text) {
        DWORD written;
        WriteConsoleW(m_out, text.utf16(), DWORD(text.size()), &written, nullptr);
    }
    // The next character's UTF-8; empty at the end.
    QByteArray read() {
        wchar_t character;
        DWORD got = 0;
        if (!ReadConsoleW(m_in, &character, 1, &got, nullptr) || got == 0)
            return {};
        return QString(QChar(character)).toUtf8();
    }

private:
    static HANDLE open(const wchar_t* name) {
        return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_EXISTING, 0, nullptr);
    }
    HANDLE m_in;
    HANDLE m_out;
    DWORD m_mode = 0;
    bool m_isOpen = false;
};

#else

// The controlling terminal, without echo and line editing while it lives. The keys that send
// signals are read like others: a program killed here would leave the terminal without echo.
class Terminal {
public:
    Terminal()
        : m_fd(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {
        if (m_fd < 0 || tcgetattr(m_fd, &m_before) != 0)
            return;
        termios silent = m_before;
        silent.c_lflag &= ~tcflag_t(ECHO | ICANON | ISIG);
        silent.c_cc[VMIN] = 1;
        silent.c_cc[VTIME] = 0;
        m_isOpen = tcsetattr(m_fd, TCSAFLUSH, &silent) == 0;
    }
    ~Terminal() {
        if (m_isOpen)
            tcsetattr(m_fd, TCSAFLUSH, &m_before);
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    bool isOpen() const { return m_isOpen; }
    void write(const QString& text) {
        const QByteArray bytes = text.toLocal8Bit();
        [[maybe_unused]] const auto written =
            ::write(m_fd, bytes.constData(), size_t(bytes.size()));
    }
    // The next byte; empty at the end.
    QByteArray read() {
        char byte;
        return ::read(m_fd, &byte, 1) == 1 ? QByteArray(1, byte) : QByteArray();
    }

private:
    int m_fd;
    termios m_before{};
    bool m_isOpen = false;
};

#endif

// Takes the last character, which may be of several bytes, away.
void eraseLast(QByteArray& utf8) {
    while (!utf8.isEmpty() && (uchar(utf8.back()) & 0xC0) == 0x80)
        utf8.chop(1);
    utf8.chop(1);
}

std::optional<QByteArray> readLine(Terminal& terminal) {
    QByteArray line;
    for (QByteArray part = terminal.read(); !part.isEmpty(); part = terminal.read()) {
        switch (part.front()) {
        case interrupt: return std::nullopt;
        case '\r':
        case '\n':
        case endOfInput: return line;
        case backspace:
        case erase: eraseLast(line); break;
        case killLine: line.clear(); break;
        default: line += part;
        }
    }
    return line;
}

} // namespace

std::optional<QString> askPassword(const QString& prompt) {
    Terminal terminal;
    if (!terminal.isOpen())
        return std::nullopt;
    terminal.write(prompt);
    const auto line = readLine(terminal);
    terminal.write(QStringLiteral("\n"));
    if (!line)
        return std::nullopt;
    return QString::fromUtf8(*line);
}
