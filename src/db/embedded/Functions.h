#pragma once

#include "DateLanguage.h"
#include "NumberFormat.h"
#include "OraError.h"
#include "OracleDate.h"
#include "OracleNumber.h"
#include "TimeZone.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;

namespace ora {

// What functions ask of their session. Owned by the session and outlives the connection; the
// session sets it before each statement where it changes.
struct FunctionContext {
    std::string user = "DEMO"; // upper case as the dictionary shows it
    std::int64_t userId = 0;
    std::int64_t sessionId = 0; // USERENV('SESSIONID')
    std::int64_t sid = 0;
    std::string databaseName;
    std::string host;
    std::string osUser;
    std::string program;

    std::string dateFormat = "DD-MON-RR";                     // NLS_DATE_FORMAT
    std::string timestampFormat = "DD-MON-RR HH.MI.SSXFF AM"; // NLS_TIMESTAMP_FORMAT
    std::string timestampTzFormat = "DD-MON-RR HH.MI.SSXFF AM TZR";
    std::string language = "AMERICAN";
    std::string territory = "AMERICA";
    std::string isoCurrency = "AMERICA";  // the territory whose currency it is
    std::string sort = "BINARY";          // NLS_SORT
    std::string comparison = "BINARY";    // NLS_COMP
    std::string lengthSemantics = "BYTE"; // NLS_LENGTH_SEMANTICS
    NumberSymbols symbols;
    DateLocale dates;
    TimeZone zone = systemZone();

    OracleDate statementTime; // one statement sees one time

    // NEXTVAL and CURRVAL; the name is "OWNER.NAME". They throw OraError.
    std::function<OracleNumber(const std::string&)> nextValue;
    std::function<OracleNumber(const std::string&)> currentValue;
    // The row's number of a sequence that it names more than once; see Sequences::rowValue.
    std::function<OracleNumber(const std::string&, int place)> rowValue;

    // What only the session's catalog knows; see Dependencies.h.
    std::function<std::string()> dependencies;
    std::function<bool(const std::string& view)> viewIsValid;
};

// Registers every function that FunctionTable names, and the helpers:
//   num_from_int(i) num_from_real(r) num_int(n)         between NUMBER and SQLite's own numbers
//   num_fit(n, precision, scale)                        a NUMBER(p,s) column: rounds; ORA-01438
//   text_fit(t, length, unit, padded, column)           a text column: ORA-12899, pads CHAR.
//       unit 'B' or 'C'; column is '"SCHEMA"."TABLE"."COLUMN"' for the message
//   text_cast(t, length, padded)                        CAST: cuts and pads
//   date_cast(d) ts_cast(t, digits)                     drops / rounds the fraction
//   sort_key(flags, v1, v2 …)                           one BLOB that sorts like the ORDER BY; for
//       each value one letter in flags: 'a' ascending nulls last, 'A' ascending nulls first,
//       'd' descending nulls first (the server's defaults are a and d), 'D' descending nulls last
//   keep_sum keep_avg keep_count keep_min keep_max keep_variance keep_stddev (x, key)
//       aggregate over the rows with the smallest key: KEEP (DENSE_RANK FIRST …); for LAST give
//       sort_key the opposite flags (a<->D, d<->A)
//   …_frame(x …, key, low, high)                        any of the aggregates; see FrameRows.h
//   num_reach(n) ds_reach(i) ym_reach(i)                a window's distance: ORA-01428 below zero
//   nth_not_null(x, n) nth_last_not_null(x, n) nth_last(x, n)   windows; n a SQLite integer
//   text_concat(a, b, …)                                ||
//   text_like(value, pattern [, escape])                LIKE: minds case; ORA-01425
//   cell_text(n)                                        a NUMBER as a result cell prints it
//   seq_next('OWNER.NAME') seq_curr('OWNER.NAME') seq_row('OWNER.NAME', place)
// A failing function reports "ORA-nnnnn: text"; errorFrom() turns that back.
void registerFunctions(sqlite3* database, FunctionContext& context);

// The failure in SQLite's message when it is one of a function's; nullopt for SQLite's own.
std::optional<OraError> errorFrom(std::string_view message);

} // namespace ora
