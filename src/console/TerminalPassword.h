#pragma once

#include <QString>

#include <optional>

// Asks for a password on the terminal, without echo, whatever standard input is. Nothing when there
// is no terminal or the person gave up (Ctrl+C).
std::optional<QString> askPassword(const QString& prompt);
