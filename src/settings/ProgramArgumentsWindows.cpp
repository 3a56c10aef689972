#include "ProgramArguments.h"

#include "PasswordScrub.h"

#include <qt_windows.h>
#include <shellapi.h>

// main's words are in the code page, which has not every letter of a name or a password.
ProgramArguments::ProgramArguments(int& argc, char**& argv) {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!words)
        return;
    for (int i = 0; i < count; ++i)
        m_texts.push_back(QString::fromWCharArray(words[i]).toUtf8());
    LocalFree(words);
    for (QByteArray& text : m_texts)
        m_words.push_back(text.data());
    m_words.push_back(nullptr);
    argc = count;
    argv = m_words.data();
}

QString argumentText(const char* word) {
    return QString::fromUtf8(word);
}

void hidePasswordFromSystem() {
    scrubPassword(GetCommandLineW(), 0);
}
