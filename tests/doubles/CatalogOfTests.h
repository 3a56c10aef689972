#pragma once

#include "Catalog.h"

#include <map>

// A catalog without a database: EMP, DEPT, DUAL, a view and a sequence, as the engine would store
// them.
class CatalogOfTests : public ora::Catalog {
public:
    CatalogOfTests() {
        using ora::SqlType;
        add("EMP", "t1",
            {{"EMPNO", {SqlType::Number, 0, 4}},
             {"ENAME", {SqlType::Varchar2, 10}},
             {"JOB", {SqlType::Varchar2, 9}},
             {"MGR", {SqlType::Number, 0, 4}},
             {"HIREDATE", {SqlType::Date}},
             {"SAL", {SqlType::Number, 0, 7, 2}},
             {"COMM", {SqlType::Number, 0, 7, 2}},
             {"DEPTNO", {SqlType::Number, 0, 2}}});
        add("DEPT", "t2",
            {{"DEPTNO", {SqlType::Number, 0, 2}},
             {"DNAME", {SqlType::Varchar2, 14}},
             {"LOC", {SqlType::Char, 13}}});
        add("DUAL", "(SELECT 'X' AS c1)", {{"DUMMY", {SqlType::Varchar2, 1}}},
            ora::Relation::Kind::Dictionary);
        add("V", "", {{"N", {SqlType::Varchar2, 10}}, {"S", {SqlType::Number}}},
            ora::Relation::Kind::View)
            .viewText = "select ename, sal * 12 from emp where deptno = 10";
    }

    const std::string& user() const override { return m_user; }

    ora::RelationPtr relation(std::string_view owner, std::string_view name) const override {
        const auto found = m_relations.find(name);
        const bool own = owner.empty() || owner == m_user;
        return own && found != m_relations.end() ? found->second : nullptr;
    }

    std::optional<ora::SequenceRef> sequence(std::string_view,
                                             std::string_view name) const override {
        if (name != "SEQ")
            return std::nullopt;
        return ora::SequenceRef{m_user, "SEQ", m_user + ".SEQ"};
    }

private:
    struct Column {
        const char* name;
        ora::TypeInfo type;
    };

    ora::Relation& add(const char* name, const char* source, const std::vector<Column>& columns,
                       ora::Relation::Kind kind = ora::Relation::Kind::Table) {
        auto relation = std::make_shared<ora::Relation>();
        relation->kind = kind;
        relation->owner = m_user;
        relation->name = name;
        relation->source = source;
        for (const Column& column : columns) {
            ora::CatalogColumn& made = relation->columns.emplace_back();
            made.name = column.name;
            made.type = column.type;
            made.sqlName = "c" + std::to_string(relation->columns.size());
        }
        m_relations[name] = relation;
        return *relation;
    }

    std::string m_user = "SCOTT";
    std::map<std::string, std::shared_ptr<ora::Relation>, std::less<>> m_relations;
};
