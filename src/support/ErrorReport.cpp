#include "ErrorReport.h"

#include "Version.h"

using namespace Qt::StringLiterals;

QString supportAddress() {
    return u"support@quillmate.example"_s;
}

QString errorReportText(const ErrorReport& report) {
    const QString crlf = u"\r\n"_s;
    // Each separator closes the line before it and so begins the next; no blank after "Product:".
    return u"-----Error Report for Product:"_s + QString::fromLatin1(QUILLMATE_NAME) + u' ' +
           QString::fromLatin1(QUILLMATE_VERSION) + crlf + u"----- "_s + u"***** NO: "_s +
           report.number + crlf + u" ***** "_s + u"SOURCE: "_s + report.source + crlf +
           u" ***** "_s + u"DESCRIPTION:"_s + report.description + crlf + u" ***** "_s;
}

QString errorReportMailAddress(const ErrorReport& report) {
    return u"mailto:"_s + supportAddress() + u"?subject=Bug%20Report&body="_s +
           errorReportText(report).replace(u' ', "%20"_L1);
}

QString mailProblemText() {
    return u"There were problems encountered whilst launching your Internet mail client.\r"
           "Please take a screen sample by pressing 'ALT + PrtSc' and email to "_s +
           supportAddress();
}
