#include "ResultOutput.h"

#include "AtomicFile.h"
#include "Error.h"
#include "GridData.h"
#include "Host.h"
#include "QueryWindow.h"
#include "Recordset.h"
#include "RecordsetText.h"
#include "RunState.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int columnMargin = 400; // twips

// Redraw comes back on however the loading ends.
class RedrawOff {
public:
    explicit RedrawOff(GridData& grid)
        : m_grid(grid) {
        m_grid.setRedraw(false);
    }
    ~RedrawOff() { m_grid.setRedraw(true); }
    Q_DISABLE_COPY_MOVE(RedrawOff)

private:
    GridData& m_grid;
};

void writeHeader(const Recordset& recordset, GridData& grid) {
    const int fields = int(recordset.fieldCount());
    grid.setCols(fields + 1);
    for (int field = 0; field < fields; ++field)
        grid.setText(0, field + 1, recordset.fieldName(field));
}

void loadGrid(Recordset& recordset, GridData& grid, QueryWindow& window) {
    writeHeader(recordset, grid);
    {
        const RedrawOff redrawOff(grid);
        // The grid takes over the fetched rows as they are: nothing is held twice, and no growth of
        // Rows in steps of 100 is to be seen on the way.
        grid.adoptRows(recordset.takeRows());
        // Always the result grid, also when the plan was loaded: kept on purpose.
        Size_Grid_Columns(window.resultGrid(), window);
    }
    grid.Refresh();
}

void writeFile(const QString& path, RecordsetText& text) {
    WholeFile file(path);
    text.writeTo([&](QByteArray& block) { file.put(block); });
    file.commit();
}

} // namespace

void Load_Recordset_Into_Grid(Recordset* recordset, GridData& grid, bool results,
                              QueryWindow& window, RunState& state) {
    if (!recordset)
        return;
    try {
        loadGrid(*recordset, grid, window);
        if (results)
            state.recordCount = QString::number(window.resultGrid().Rows() - 1);
    } catch (Error& error) {
        error.trailed(u"..frmQuery.Load_Recordset_Into_Grid");
        throw;
    }
}

void Size_Grid_Columns(GridData& grid, const QueryWindow& window) {
    for (int column = 0; column < grid.Cols(); ++column) {
        const int width = window.textWidth(QString::fromUtf8(grid.longestText(column)));
        grid.setColWidth(column, std::min(width, std::numeric_limits<int>::max() - columnMargin) +
                                     columnMargin);
    }
}

void Load_Recordset_Into_Text(Recordset* recordset, QStringView separator, QueryWindow& window) {
    if (!recordset)
        return;
    try {
        window.setResultText(RecordsetText(*recordset, separator).whole());
    } catch (Error& error) {
        error.trailed(u"..frmQuery.Load_Recordset_Into_Text");
        throw;
    }
}

void Load_RecordSet_Into_File(Recordset* recordset, QStringView separator, QueryWindow& window,
                              Host& host, RunState& state) {
    if (!recordset)
        return;
    try {
        RecordsetText output(*recordset, separator);
        if (const QString problem = Save_Results_File(output, host); !problem.isEmpty())
            state.fileProblem = problem;
        window.setStatus(StatusPanel::RecordCount, QString::number(output.rows()) + u" rows"_s);
    } catch (Error& error) {
        error.trailed(u"..MDIMain.Load_RecordSet_Into_File"); // the main window's name, on purpose
        throw;
    }
}

QString Save_Results_File(RecordsetText& text, Host& host) noexcept {
    try {
        FileDialogRequest request;
        request.overwritePrompt = true;
        // Not one of the filter's extensions: kept on purpose.
        request.defaultExtension = u".sql"_s;
        request.filter = u"Text File (*.txt)|*.txt|Microsoft Excel File (*.xls)|*.xls|"
                         "All Files (*.*)|*.*"_s;
        const auto path = host.saveFileName(request);
        if (path)
            writeFile(*path, text);
        return {};
    } catch (const Error& error) {
        return error.description();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
}
