#include "ExecutionPlan.h"

#include "Command.h"
#include "Error.h"
#include "GridData.h"
#include "Host.h"
#include "QueryWindow.h"
#include "ResultOutput.h"
#include "RunState.h"
#include "Trace.h"
#include "modDatabase.h"

using namespace Qt::StringLiterals;

namespace {

// All plans share one statement id, also those of two windows: each run deletes its rows first.
constexpr auto deleteOldPlan = "DELETE FROM PLAN_TABLE WHERE Statement_Id = 'TALLOWEX' "_L1;
constexpr auto explainPrefix = "Explain Plan set Statement_Id = 'TALLOWEX' FOR  "_L1;
constexpr auto totalsQuery = "SELECT SUM(COST), Sum(Cardinality) FROM PLAN_TABLE"
                             " WHERE  Statement_Id = 'TALLOWEX' "_L1;

// Joined as they stand, with nothing between them.
constexpr QLatin1String planTablePieces[] = {
    "CREATE TABLE PLAN_TABLE ("_L1,       " statement_id    varchar2(30),"_L1,
    " timestamp       date,"_L1,          " remarks         varchar2(80),"_L1,
    " operation       varchar2(30),"_L1,  " options         varchar2(30),"_L1,
    " object_node     varchar2(128),"_L1, " object_owner    varchar2(30),"_L1,
    " object_name     varchar2(30),"_L1,  " object_instance numeric,"_L1,
    " object_type     varchar2(30),"_L1,  " optimizer       varchar2(255),"_L1,
    " search_columns  number,"_L1,        " id      numeric,"_L1,
    " parent_id   numeric,"_L1,           " position    numeric,"_L1,
    " cost        numeric,"_L1,           " cardinality numeric,"_L1,
    " bytes       numeric,"_L1,           " other_tag       varchar2(255),"_L1,
    " partition_start varchar2(255),"_L1, " partition_stop  varchar2(255),"_L1,
    " partition_id    numeric,"_L1,       " other       long,"_L1,
    " distribution    varchar2(30))"_L1,
};

// The object type's ")" has no partner, and the totals read " cost=" and " card =": kept on
// purpose.
constexpr QLatin1String planQueryPieces[] = {
    "SELECT "_L1,
    " LPAD (' ', 2 *(level -1))||"_L1,
    "Operation||"_L1,
    " Decode (other_tag,null,'','*')||"_L1,
    "Decode (options,null,'','('||options||')')||"_L1,
    " Decode (object_name,null,'',' of '''||object_name||'''')||"_L1,
    " Decode (object_type,null,'',' '||object_type||')')||"_L1,
    " Decode (id,0,decode(optimizer,null,'',' optimizer='||optimizer))||"_L1,
    " Decode (cost,null,'',' cost='||cost)||"_L1,
    " Decode(cardinality,null,'',' card ='||cardinality) Plan"_L1,
    " From PLAN_TABLE"_L1,
    " start with id=0 and statement_id = 'TALLOWEX'"_L1,
    " connect by prior id=parent_id and statement_id = 'TALLOWEX'"_L1,
    " order by id,position"_L1,
};

template<size_t N>
QString joined(const QLatin1String (&pieces)[N]) {
    QString text;
    for (QLatin1String piece : pieces)
        text += piece;
    return text;
}

Connection& sharedConnection(modDatabase& database) {
    if (Connection* connection = database.connection())
        return *connection;
    throw Error(Error::ObjectNotSet, QString(), u"Object variable not set"_s);
}

Recordset rowsOf(const QString& sql, modDatabase& database) {
    Recordset recordset;
    recordset.Open({&sharedConnection(database), CommandTypeEnum::Text, sql});
    return recordset;
}

void explain(const QString& SQL, QueryWindow& window, modDatabase& database, RunState& state) {
    Connection& connection = sharedConnection(database);
    connection.Execute(deleteOldPlan);
    connection.Execute(explainPrefix + SQL);
    Recordset plan = rowsOf(planQuery(), database);
    Load_Recordset_Into_Grid(&plan, window.planGrid(), false, window, state);
    Size_Grid_Columns(window.planGrid(), window);
}

void showNotAvailable(GridData& grid) {
    constexpr int noticeWidth = 2000; // twips
    grid.setText(0, 0, u"Not available."_s);
    grid.setColWidth(0, noticeWidth);
}

// A null sum is an empty text. A failure is ignored: the texts then stay those of an earlier plan.
void keepTotals(modDatabase& database, RunState& state) {
    try {
        const Recordset totals = rowsOf(totalsQuery, database);
        state.planCost = QString::fromUtf8(totals.value(0).view());
        state.planCardinality = QString::fromUtf8(totals.value(1).view());
    } catch (const Error&) {
        return;
    }
}

} // namespace

QString planTableStatement() {
    return joined(planTablePieces);
}

QString planQuery() {
    return joined(planQueryPieces);
}

void Create_Plan_Table(modDatabase& database, Host& host) {
    try {
        host.setMousePointer(MousePointer::Hourglass);
        const QString sql = planTableStatement();
        database.trace().Trace(sql);
        sharedConnection(database).Execute(sql);
        host.setMousePointer(MousePointer::Default);
    } catch (Error& error) {
        host.setMousePointer(MousePointer::Default);
        if (error.number() == DbErrorNumber::CommandRejected)
            return;
        error.trailed(u"..MDIMain.Create_Plan_Table");
        throw;
    }
}

void GetPlan(const QString& SQL, QueryWindow& window, modDatabase& database, RunState& state) {
    try {
        explain(SQL, window, database, state);
    } catch (Error& error) {
        if (error.number() == DbErrorNumber::GeneralFailure) {
            showNotAvailable(window.planGrid());
            return;
        }
        error.trailed(u"..GetPlan");
        throw;
    }
    keepTotals(database, state);
}
