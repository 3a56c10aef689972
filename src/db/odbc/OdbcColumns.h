#pragma once

#include "DriverHabits.h"
#include "OdbcHandle.h"
#include "Provider.h"

#include <vector>

enum class CellShape { Narrow, Wide, Number, Integer, Bit, Date, Timestamp, Binary };

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

// Whether a timestamp's parts may stand for one that the driver could not read.
bool isDoubtful(const SQL_TIMESTAMP_STRUCT& timestamp);

// Appends a cell that is complete. Throws std::bad_alloc.
void appendCell(CellStore& rows, CellShape shape, const char* data, qsizetype bytes);
