#include "SessionList.h"

#include "Error.h"
#include "TreeNodes.h"
#include "modDatabase.h"

using namespace Qt::StringLiterals;

namespace {

const QString sessionSql =
    u"select a.spid pid, b.sid sid, b.serial# ser#, b.machine box, b.username username,"
    "b.osuser os_user, b.program program"
    " from v$session b, v$process a "
    " Where b.paddr = a.addr"
    " and    type='USER' and b.username is not null"
    " order  by spid"_s;

void addSession(TreeNodes& nodes, TreeNode& folder, const Recordset& row) {
    QString text = row.text(u"username") + u" ("_s + row.text(u"program") + u')';
    text.remove("\r\n"_L1);
    nodes.add(&folder, {text, u"sessions"_s, {}, u"ID:"_s + row.text(u"pid")});
}

} // namespace

void Load_Sessions(TreeNodes& nodes, TreeNode& folder, modDatabase& database) {
    try {
        const auto rows = database.Get_Recordset(sessionSql, 0);
        for (; !rows->atEof(); rows->MoveNext())
            addSession(nodes, folder, *rows);
    } catch (const Error&) {
        nodes.add(&folder, {u"<Not Available>"_s, {}, {}, {}});
    }
}
