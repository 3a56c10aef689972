#include "CommandLine.h"

#include "PasswordScrub.h"
#include "ProgramArguments.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

constexpr int passwordField = 1; // between the first "|" and the second

bool isOption(const char* argument) {
    return argument[0] == '-';
}

std::span<char*> logonWords(std::span<char*> arguments) {
    auto begin = arguments.begin();
    if (begin != arguments.end() && isOption(*begin)) {
        begin = std::find_if(begin, arguments.end(), [](const char* argument) {
            return std::strchr(argument, '|') != nullptr;
        });
    }
    std::ptrdiff_t bars = 0;
    const auto end = std::find_if(begin, arguments.end(), [&](const char* argument) {
        if (bars > passwordField && isOption(argument))
            return true;
        bars += std::count(argument, argument + std::strlen(argument), '|');
        return false;
    });
    return {begin, end};
}

} // namespace

Logon splitLogon(const QString& text) {
    const qsizetype first = text.indexOf(u'|');
    if (first < 0)
        return {text, {}, {}};
    const qsizetype second = text.indexOf(u'|', first + 1);
    if (second < 0)
        return {text.left(first), text.mid(first + 1), {}};
    return {text.left(first), text.mid(first + 1, second - first - 1), text.mid(second + 1)};
}

Logon takeLogon(std::span<char*> arguments) {
    QStringList words;
    for (const char* argument : arguments)
        words << argumentText(argument);
    int bars = 0;
    for (char* argument : arguments)
        bars = scrubPassword(argument, bars);
    hidePasswordFromSystem();
    return splitLogon(words.join(u' '));
}

Logon extractLogon(int& argc, char** argv) {
    const std::span<char*> words = logonWords({argv + 1, argv + argc});
    const Logon logon = takeLogon(words);
    // The null behind the arguments moves along.
    std::move(words.data() + words.size(), argv + argc + 1, words.data());
    argc -= int(words.size());
    return logon;
}
