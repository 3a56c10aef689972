#include "TerminalPassword.h"

#include "Terminal.h"

namespace {

constexpr char interrupt = 0x03;
constexpr char endOfInput = 0x04;
constexpr char backspace = 0x08;
constexpr char killLine = 0x15;
constexpr char erase = 0x7f;

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
    const auto terminal = Terminal::open();
    if (!terminal)
        return std::nullopt;
    terminal->write(prompt);
    const auto line = readLine(*terminal);
    terminal->write(QStringLiteral("\n"));
    if (!line)
        return std::nullopt;
    return QString::fromUtf8(*line);
}
