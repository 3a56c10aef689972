#pragma once

#include <QString>

#include <span>

// The "user|password|service" of a command line.
struct Logon {
    QString user;
    QString password;
    QString service;

    bool isEmpty() const { return user.isEmpty() && password.isEmpty() && service.isEmpty(); }
};

// Cuts at the first two "|"; a text without two of them fills what it has, in order.
Logon splitLogon(const QString& text);

// Reads the logon from the arguments (those of main, from the first to the last that belong to it;
// more than one when a blank was not quoted) and overwrites the password's characters in place, so
// that no list of processes shows them.
Logon takeLogon(std::span<char*> arguments);

// Takes the logon out of main's arguments as takeLogon does and leaves the options to the toolkit.
// Options stand before it, and behind it once its service has begun; one that stands before it may
// have a value, so the logon then begins at the first argument with a "|".
Logon extractLogon(int& argc, char** argv);
