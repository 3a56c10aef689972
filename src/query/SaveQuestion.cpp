#include "SaveQuestion.h"

#include "frmSavePrompt.h"

using namespace Qt::StringLiterals;

namespace {

QString unsavedText(const QString& name) {
    return u"The query '"_s + name + u"' has unsaved changes."_s;
}

} // namespace

Answer askInMessageBox(Host& host, const QString& name) {
    return host.msgBox(unsavedText(name) + u"\r\nDo you wish to save the changes ?"_s,
                       MsgButtons::YesNoCancel, MsgIcon::Exclamation);
}

Answer askInSavePrompt(const QString& name, QWidget* parent) {
    frmSavePrompt prompt(unsavedText(name) + u"  "_s, parent);
    prompt.exec();
    return prompt.Response;
}
