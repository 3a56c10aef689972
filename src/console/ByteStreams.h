#pragma once

// While it lives, standard output and standard error take bytes as they are, a console shows them
// as UTF-8, and a pipe that its reader closed is a failed write and no signal that ends the
// program.
class ByteStreams {
public:
    ByteStreams();
    ~ByteStreams();
    ByteStreams(const ByteStreams&) = delete;
    ByteStreams& operator=(const ByteStreams&) = delete;

private:
    [[maybe_unused]] unsigned m_codePageBefore = 0; // of the console, which outlives the program
};
