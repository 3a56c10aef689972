#pragma once

#include "OdbcHandle.h"

#include <QString>

// How a driver likes to be treated.
struct DriverHabits {
    // Character cells come as UTF-8 whatever was set up; else they are asked for as UTF-16.
    bool utf8Cells = false;
    // Texts go both ways as UTF-8: the driver has no wide calls, and the manager's own conversion
    // loses what is outside Latin-1.
    bool narrowCalls = false;
    // Results that may be large are fetched through a cursor of PostgreSQL's own.
    bool postgresCursors = false;
    // Timestamps are asked for as their parts: the driver's own text of one costs as much as the
    // rest of the row. What it cannot read it gives as today at midnight.
    bool timestampParts = false;
    // Integers are asked for as such: their text costs the driver twice as much. All that it calls
    // so fit in 64 bits.
    bool plainIntegers = false;
    // SQLGetData serves bound columns of any row of a block, in any order.
    bool rereadsBlocks = false;
};

// Of the driver that serves the connection.
DriverHabits habitsOf(const OdbcHandle& connection);

// What is added to a connection string so that texts come as they are; often nothing. driver: its
// name or its file.
QString settingsOf(const QString& driver);
