#include "Binding.h"

#include "ErrorText.h"

namespace ora {

namespace {

// Far within a thread's stack, and deeper than the engine's own parser takes.
constexpr int DeepestBinding = 600;

} // namespace

RelationPtr Binding::relation(const ObjectName& name) {
    constexpr int NoSuchTable = 942;
    RelationPtr found = catalog.relation(name.schema.text, name.name.text);
    if (!found)
        raise(NoSuchTable, name.name.at.begin);
    m_relations.push_back(found);
    return found;
}

const NamedQuery* Binding::namedQuery(std::string_view name) const {
    for (auto query = namedQueries.rbegin(); query != namedQueries.rend(); ++query)
        if (query->name == name)
            return &*query;
    return nullptr;
}

const Tree& Binding::keep(std::unique_ptr<Tree> tree) {
    m_trees.push_back(std::move(tree));
    return *m_trees.back();
}

BindDepth::BindDepth(Binding& binding)
    : m_binding(binding) {
    if (binding.depth >= DeepestBinding)
        refuse("an expression nested deeper than " + std::to_string(DeepestBinding) + " levels");
    ++binding.depth;
}

void raiseInvalidView(const Relation& view, const OraError& error) {
    constexpr int UnimplementedFeature = 3001;
    constexpr int HasErrors = 4063;
    if (error.code() == UnimplementedFeature || error.code() == HasErrors)
        throw error;
    throw OraError(HasErrors, "view \"" + view.owner + '.' + view.name + "\" has errors");
}

} // namespace ora
