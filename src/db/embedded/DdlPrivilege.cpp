#include "DdlParts.h"
#include "ErrorText.h"
#include "NamedRow.h"
#include "Requirements.h"

// GRANT and REVOKE: who may do what with the user's objects is kept for the dictionary. Only one
// user works on a file, so that nothing else comes of it.
namespace ora {

namespace {

constexpr int missingTable = 942;

constexpr std::string_view knownUsers[] = {"PUBLIC", "SYS", "SYSTEM", "SCOTT", "HR",  "OE",
                                           "SH",     "PM",  "IX",     "BI",    "DEMO"};
constexpr std::string_view knownRoles[] = {"CONNECT",
                                           "RESOURCE",
                                           "DBA",
                                           "SELECT_CATALOG_ROLE",
                                           "EXECUTE_CATALOG_ROLE",
                                           "EXP_FULL_DATABASE",
                                           "IMP_FULL_DATABASE",
                                           "PLUSTRACE",
                                           "SYSDBA",
                                           "SYSOPER"};

struct AllOf {
    std::string_view kind;
    std::string_view privilege;
};
constexpr AllOf allPrivileges[] = {
    {"TABLE", "ALTER"},
    {"TABLE", "DEBUG"},
    {"TABLE", "DELETE"},
    {"TABLE", "FLASHBACK"},
    {"TABLE", "INDEX"},
    {"TABLE", "INSERT"},
    {"TABLE", "ON COMMIT REFRESH"},
    {"TABLE", "QUERY REWRITE"},
    {"TABLE", "READ"},
    {"TABLE", "REFERENCES"},
    {"TABLE", "SELECT"},
    {"TABLE", "UPDATE"},
    {"VIEW", "DEBUG"},
    {"VIEW", "DELETE"},
    {"VIEW", "FLASHBACK"},
    {"VIEW", "INSERT"},
    {"VIEW", "MERGE VIEW"},
    {"VIEW", "ON COMMIT REFRESH"},
    {"VIEW", "QUERY REWRITE"},
    {"VIEW", "READ"},
    {"VIEW", "REFERENCES"},
    {"VIEW", "SELECT"},
    {"VIEW", "UNDER"},
    {"VIEW", "UPDATE"},
    {"SEQUENCE", "ALTER"},
    {"SEQUENCE", "SELECT"},
};

class Granting {
public:
    Granting(const DdlContext& context, const Grant& grant)
        : m_context(context)
        , m_grant(grant) {}

    void run() {
        requireNames();
        if (!m_grant.object.name)
            return;
        const bool own = m_context.catalog.isOwn(m_grant.object.schema.text);
        const auto object =
            own ? m_context.catalog.ownObject(m_grant.object.name.text) : std::nullopt;
        if (object && object->kind != "SYNONYM")
            return record(*object);
        if (!m_context.catalog.relation(m_grant.object.schema.text, m_grant.object.name.text))
            raise(missingTable);
    }

private:
    void requireNames() const {
        constexpr int noSuchGrantee = 1917;
        constexpr int noSuchRole = 1919;
        constexpr int toYourself = 1749;
        for (const Privilege& privilege : m_grant.privileges)
            if (privilege.kind == PrivilegeKind::Role && !isOneOf(privilege.name, knownRoles))
                throw OraError(noSuchRole,
                               "role '" + std::string(privilege.name) + "' does not exist");
        for (const Name& grantee : m_grant.grantees) {
            if (grantee.text == m_context.catalog.user() && m_grant.onObject)
                raise(toYourself);
            if (!isOneOf(grantee.text, knownUsers) && !isOneOf(grantee.text, knownRoles) &&
                grantee.text != m_context.catalog.user())
                throw OraError(noSuchGrantee,
                               "user or role '" + std::string(grantee.text) + "' does not exist");
        }
    }

    void record(const CatalogStore::Object& object) const {
        for (const Name& grantee : m_grant.grantees)
            for (const Privilege& privilege : m_grant.privileges)
                privilege.isAll() ? recordAll(object, grantee)
                                  : recordOne(object, grantee, privilege);
    }

    void recordAll(const CatalogStore::Object& object, const Name& grantee) const {
        bool any = false;
        for (const AllOf& one : allPrivileges)
            if (one.kind == object.kind)
                any = change(object.id, grantee.text, one.privilege, {}) || any;
        requireGranted(any);
    }

    void recordOne(const CatalogStore::Object& object, const Name& grantee,
                   const Privilege& privilege) const {
        if (privilege.columns.empty())
            return requireGranted(change(object.id, grantee.text, privilege.name, {}));
        const RelationPtr relation = m_context.catalog.relation({}, object.name);
        for (const Name& column : privilege.columns) {
            requireColumn(*relation, column);
            change(object.id, grantee.text, privilege.name, column.text);
        }
    }

    void requireGranted(bool found) const {
        constexpr int neverGranted = 1927;
        if (m_grant.revokes && !found)
            raise(neverGranted);
    }

    // Whether there was such a grant.
    bool change(ObjectId object, std::string_view grantee, std::string_view privilege,
                std::string_view column) const {
        SqliteStatement row = m_context.db.prepare(
            m_grant.revokes
                ? "DELETE FROM ora_grants WHERE object = ?1 AND grantee = ?2 AND privilege = ?3"
                : "INSERT INTO ora_grants VALUES (?1, ?2, ?3, ?4, ?5) ON CONFLICT DO UPDATE SET "
                  "grantable = max(grantable, excluded.grantable)");
        row.bind(1, object).bind(2, grantee).bind(3, privilege);
        if (!m_grant.revokes)
            row.bind(4, column.empty() ? "" : column).bind(5, sqlite3_int64(m_grant.grantable));
        row.step();
        return sqlite3_changes(m_context.db.get()) > 0;
    }

    const DdlContext& m_context;
    const Grant& m_grant;
};

} // namespace

void grantOrRevoke(const DdlContext& context, const Grant& grant) {
    Granting(context, grant).run();
}

} // namespace ora
