#pragma once

// The ODBC headers behind one include: on Windows they stand on the platform's own types.
#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif
// Both widths of the calls are used, each by its own name.
#define SQL_NOUNICODEMAP
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
