#include "HelpPages.h"

#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

const struct {
    QLatin1StringView name; // of the control or window
    QLatin1StringView page;
} pages[] = {
    {"txtSQL"_L1, "/editor.htm"_L1},
    {"grdResults"_L1, "/results.htm"_L1},
    {"txtResults"_L1, "/results.htm"_L1},
    {"txtMessage"_L1, "/messages.htm"_L1},
    {"lvwStats"_L1, "/statistics.htm"_L1},
    {"grdEP"_L1, "/plan.htm"_L1},
    {"frmQuery"_L1, "/querywindow.htm"_L1},
    {"trvObjects"_L1, "/objects.htm"_L1},
    {"trvDictionary"_L1, "/dictionary.htm"_L1},
    {"trvQueries"_L1, "/favorites.htm"_L1},
    {"frmLogin"_L1, "/connecting.htm"_L1},
    {"frmOptions"_L1, "/options.htm"_L1},
    {"frmFavorites"_L1, "/favorites.htm"_L1},
    {"frmSavePrompt"_L1, "/files.htm"_L1},
    {"frmDevExtract"_L1, "/code.htm"_L1},
    {"frmTrace"_L1, "/trace.htm"_L1},
    {"frmError"_L1, "/errors.htm"_L1},
    {"frmAbout"_L1, "/index.htm"_L1},
    {"frmHelp"_L1, "/help.htm"_L1},
    {"MDIMain"_L1, "/mainwindow.htm"_L1},
};

} // namespace

QString helpPageOf(const QWidget* control) {
    for (; control; control = control->parentWidget()) {
        for (const auto& [name, page] : pages) {
            if (control->objectName() == name)
                return page;
        }
    }
    return {};
}
