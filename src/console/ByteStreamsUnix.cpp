#include "ByteStreams.h"

#include <csignal>

ByteStreams::ByteStreams() {
    std::signal(SIGPIPE, SIG_IGN);
}

ByteStreams::~ByteStreams() = default;
