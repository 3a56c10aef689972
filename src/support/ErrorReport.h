#pragma once

#include <QString>

// The text and address with which a trapped error is mailed to support.

// The three fields as the error dialog shows them.
struct ErrorReport {
    QString number;
    QString source;
    QString description;
};

// Where reports go.
QString supportAddress();

// The report as plain text; its lines are separated by CR LF.
QString errorReportText(const ErrorReport& report);

// The mailto: address of the report. Only blanks are encoded ("%20"); line ends stay as they are,
// on purpose: mail programs of the time expect them so.
QString errorReportMailAddress(const ErrorReport& report);

// What is shown when the mail program cannot be started.
QString mailProblemText();
