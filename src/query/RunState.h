#pragma once

#include <QString>

// What one run of a query window leaves for the next. The five statistics texts are overwritten
// only by the step that measures them, so they may be those of an earlier statement, on purpose.
struct RunState {
    qint32 MaxRecords = 0; // 0 or less: no limit

    bool errors = false;     // a statement of the batch failed at the server
    float timerMark = 0.0f;  // seconds since midnight at which the timed step began
    QString recordCount;     // of the last grid load
    QString planCost;        // of the last plan
    QString planCardinality; // of the last plan
    QString retrievalTime;   // "0.27 seconds"
    QString displayTime;

    // Why a result file of this batch was not saved; empty when none failed. A query window says
    // nothing about it; a program without a window must.
    QString fileProblem;
};
