#pragma once

#include <stdexcept>
#include <string>

// Everything of the Oracle front end lives in this namespace; its texts are UTF-8.
namespace ora {

// A failure with the server's own number. Ends the statement; the session turns it into the
// seam's error.
class OraError : public std::runtime_error {
public:
    // text: the server's sentence without the number, "table or view does not exist".
    // position: byte offset into the statement, or -1 where the server shows none.
    OraError(int code, const std::string& text, long position = -1)
        : std::runtime_error(text)
        , m_code(code)
        , m_position(position) {}

    int code() const { return m_code; }
    long position() const { return m_position; }

    // "ORA-00942: table or view does not exist"
    std::string message() const {
        std::string digits = std::to_string(m_code);
        if (digits.size() < CodeDigits)
            digits.insert(0, CodeDigits - digits.size(), '0');
        return "ORA-" + digits + ": " + what();
    }

private:
    static constexpr std::size_t CodeDigits = 5;

    int m_code;
    long m_position;
};

} // namespace ora
