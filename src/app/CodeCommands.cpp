#include "CodeCommands.h"

#include "RichTextBox.h"
#include "clsSQLFormatter.h"
#include "frmDevExtract.h"
#include "frmQuery.h"

using namespace Qt::StringLiterals;

void CodeCommands::Generate_Code(const frmQuery& query, Host& host, QWidget* parent) {
    constexpr qint32 width = 100;
    constexpr bool lineContinuations = true;
    constexpr bool declareVariable = true;
    constexpr bool breakAtFromAndWhere = false;
    const QString code =
        clsSQLFormatter(host).FormatSQL(query.txtSQL->Text(), width, lineContinuations, u"strSQL"_s,
                                        declareVariable, breakAtFromAndWhere);
    frmDevExtract(code, parent).exec();
}
