#pragma once

#include "OdbcHandle.h"
#include "Provider.h"

#include <vector>

// How a driver likes to be treated.
struct DriverHabits {
    // Character cells come as UTF-8 whatever was set up; else they are asked for as UTF-16.
    bool utf8Cells = false;
    // Texts go both ways as UTF-8: the driver has no wide calls, and the manager's own conversion
    // loses what is outside Latin-1.
    bool narrowCalls = false;
    // SQLGetData serves bound columns of any row of a block, in any order.
    bool rereadsBlocks = false;
};

enum class CellShape { Narrow, Wide, Number, Date, Binary };

// One column of a result: what it is and, while it is bound, where its cells arrive.
struct OdbcColumn {
    Column column;
    CellShape shape = CellShape::Wide;
    qsizetype cellBytes = 0; // of one bound cell with its terminator; 0: read in pieces

    std::vector<char> cells;
    std::vector<SQLLEN> lengths; // bytes, SQL_NULL_DATA or SQL_NO_TOTAL; one a row
};

// The columns of an executed statement; empty when it has none. Throws ProviderError.
std::vector<OdbcColumn> describeColumns(const OdbcHandle& statement, const DriverHabits& habits);

// The C type in which cells of the shape are asked for.
SQLSMALLINT targetType(CellShape shape);
// Bytes of its terminator.
qsizetype terminatorBytes(CellShape shape);

// Appends a cell that is complete. Throws std::bad_alloc.
void appendCell(CellStore& rows, CellShape shape, const char* data, qsizetype bytes);
