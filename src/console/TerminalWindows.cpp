#include "Terminal.h"

#include <qt_windows.h>

namespace {

class ConsoleTerminal : public Terminal {
public:
    ConsoleTerminal()
        : m_in(openDevice(L"CONIN$"))
        , m_out(openDevice(L"CONOUT$")) {
        constexpr DWORD linesAndEcho =
            ENABLE_ECHO_INPUT | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
        m_isOpen =
            GetConsoleMode(m_in, &m_before) && SetConsoleMode(m_in, m_before & ~linesAndEcho);
    }
    ~ConsoleTerminal() override {
        if (m_isOpen)
            SetConsoleMode(m_in, m_before);
        CloseHandle(m_in);
        CloseHandle(m_out);
    }
    Q_DISABLE_COPY_MOVE(ConsoleTerminal)

    bool isOpen() const { return m_isOpen; }

    void write(const QString& text) override {
        DWORD written = 0;
        WriteConsoleW(m_out, text.utf16(), DWORD(text.size()), &written, nullptr);
    }

    QByteArray read() override {
        const QString first = readUnit();
        const bool isHalf = !first.isEmpty() && first.front().isHighSurrogate();
        return (isHalf ? first + readUnit() : first).toUtf8();
    }

private:
    static HANDLE openDevice(const wchar_t* name) {
        return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_EXISTING, 0, nullptr);
    }

    QString readUnit() {
        wchar_t unit = 0;
        DWORD count = 0;
        const bool isRead = ReadConsoleW(m_in, &unit, 1, &count, nullptr) && count == 1;
        return isRead ? QString(QChar(unit)) : QString();
    }

    HANDLE m_in;
    HANDLE m_out;
    DWORD m_before = 0;
    bool m_isOpen = false;
};

} // namespace

std::unique_ptr<Terminal> Terminal::open() {
    auto terminal = std::make_unique<ConsoleTerminal>();
    return terminal->isOpen() ? std::move(terminal) : nullptr;
}
