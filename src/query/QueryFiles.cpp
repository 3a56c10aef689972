#include "QueryFiles.h"

#include "Host.h"
#include "QueryText.h"
#include "frmQuery.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> askForName(Host& host) {
    FileDialogRequest request;
    request.overwritePrompt = true;
    request.defaultExtension = u".sql"_s;
    request.filter = u"Query File (*.sql)|*.sql|Text File (*.txt)|*.txt|All Files (*.*)|*.*"_s;
    return host.saveFileName(request);
}

} // namespace

void Open_Query(const QString& path, Host& host, const MakeQueryWindow& New_Query) {
    if (!path.isEmpty())
        return Open_Query_File(path, host, New_Query);
    FileDialogRequest request;
    request.filter = u"Query File (*.sql)|*.sql|All Files (*.*)|*.*"_s;
    if (const std::optional<QString> chosen = host.openFileName(request))
        Open_Query_File(*chosen, host, New_Query);
}

void Open_Query_File(const QString& path, Host& host, const MakeQueryWindow& New_Query) {
    const QueryText query = readQueryText(path);
    if (!query.problem.isEmpty()) {
        host.msgBox(u"There was a problem opening the file '"_s + path + u"'.  "_s + query.problem,
                    MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    frmQuery* window = New_Query();
    if (!window)
        return;
    window->txtSQL->setText(query.text);
    window->setFileName(path);
    window->setFileEncoding(query.encoding);
    window->setUnSavedChanges(false);
}

bool Save_Query_File(frmQuery& window, bool saveAs, Host& host) {
    QString path = saveAs ? QString() : window.FileName();
    if (path.isEmpty()) {
        const std::optional<QString> chosen = askForName(host);
        if (!chosen)
            return false;
        path = *chosen;
    }
    window.setFileEncoding(writeQueryText(path, window.txtSQL->Text(), window.fileEncoding()));
    window.setFileName(path);
    window.setUnSavedChanges(false);
    return true;
}
