#pragma once

#include <QString>

class Connection;

enum class CommandTypeEnum { Unspecified = -1, Text = 1 };

// A statement and the connection to run it on, shaped like ADO's.
struct Command {
    Connection* ActiveConnection = nullptr; // not owned; null fails at Recordset::Open
    CommandTypeEnum CommandType = CommandTypeEnum::Unspecified;
    QString CommandText;
};
