#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// The words of the command line in the form of main's, but in an encoding that has all of them.
// Lives in main for as long as the words are used.
class ProgramArguments {
public:
    // Changes main's own two to the words held here.
    ProgramArguments(int& argc, char**& argv);

private:
    std::vector<QByteArray> m_texts;
    std::vector<char*> m_words;
};

// The text of one of the words.
QString argumentText(const char* word);

// Overwrites the password of "user|password|service" where the system shows the command line to
// others, if that is another place than the words.
void hidePasswordFromSystem();
