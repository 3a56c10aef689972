#include "ByteStreams.h"

#include <cstdio>

#include <fcntl.h>
#include <io.h>
#include <qt_windows.h>

ByteStreams::ByteStreams()
    : m_codePageBefore(GetConsoleOutputCP()) {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

ByteStreams::~ByteStreams() {
    if (m_codePageBefore != 0)
        SetConsoleOutputCP(m_codePageBefore);
}
