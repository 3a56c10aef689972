#include "QueryStatistics.h"

#include "Error.h"
#include "QueryWindow.h"
#include "RunState.h"

using namespace Qt::StringLiterals;

void Show_Stats(QueryWindow& window, const RunState& state) {
    try {
        window.setStatistics({{u"Total Records"_s, state.recordCount},
                              {u"Cost"_s, state.planCost},
                              {u"Cardinality"_s, state.planCardinality},
                              {u"Retrieval Time"_s, state.retrievalTime},
                              {u"Display Results Time"_s, state.displayTime}});
        window.setStatus(StatusPanel::RecordCount, state.recordCount + u" rows"_s);
    } catch (Error& error) {
        error.trailed(u"..frmQuery.Show_Stats");
        throw;
    }
}
