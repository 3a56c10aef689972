#include "QueryFiles.h"

#include "AtomicFile.h"
#include "Host.h"
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

bool Save_Query_File(frmQuery& window, bool saveAs, Host& host) {
    QString path = saveAs ? QString() : window.FileName();
    if (path.isEmpty()) {
        const std::optional<QString> chosen = askForName(host);
        if (!chosen)
            return false;
        path = *chosen;
    }
    Write_Whole_File(path, (window.txtSQL->Text() + u"\r\n"_s).toUtf8());
    window.setFileName(path);
    window.setUnSavedChanges(false);
    return true;
}
