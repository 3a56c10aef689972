#pragma once

#include "OdbcHandle.h"
#include "Provider.h"

#include <QStringList>

// What a failed call left behind.
struct OdbcDiagnosis {
    QString state; // SQLSTATE, "42S02"
    qint32 native = 0;
    QString message; // the server's own words
};

// The first record of the handle; an empty state when the driver left none. narrowCalls: as in
// DriverHabits.
OdbcDiagnosis diagnosisOf(const OdbcHandle& handle, bool narrowCalls = false);

// The server's own words: without "[vendor][driver][server]" in front and a driver's remark behind.
QString serverText(QStringView message);

// The failure as the program's windows know it: number and native code by the table of SQLSTATEs,
// native codes and texts; the description is the server's own.
ProviderError errorOf(const OdbcDiagnosis& diagnosis);

// Whether the failure means that the server is gone.
bool isConnectionLost(const OdbcDiagnosis& diagnosis);
// Whether the statement ended because it was asked to.
bool isStopped(const OdbcDiagnosis& diagnosis);

// "ORA-01013: user requested cancel of current operation"
ProviderError stoppedError();
