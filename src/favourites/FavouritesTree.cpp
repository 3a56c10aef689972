#include "FavouritesTree.h"

#include "FavouritesFile.h"
#include "Host.h"
#include "Trace.h"

#include <QCollator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString rootKey = u"QUERIES"_s;

std::vector<CQueryFile> sortedByName(const ColQueryFiles& favourites) {
    std::vector<CQueryFile> sorted;
    for (const CQueryFile& favourite : favourites)
        sorted.push_back(favourite);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](const CQueryFile& left, const CQueryFile& right) {
                         return collator.compare(left.QueryName(), right.QueryName()) < 0;
                     });
    return sorted;
}

} // namespace

ColQueryFiles FavouritesTree::Load_Query_Files() const {
    FavouritesRead read = readFavourites(m_path);
    if (!read.problem.isEmpty())
        m_trace.Trace(u"No favorites are shown. "_s + read.problem);
    return std::move(read.favourites);
}

void FavouritesTree::Initialise_Query_Tree() {
    m_nodes.clear();
    TreeNode& root = m_nodes.add(nullptr, {u"Queries"_s, u"folderclosed"_s, {}, rootKey});
    for (const CQueryFile& favourite : sortedByName(Load_Query_Files()))
        m_nodes.add(&root, {favourite.QueryName(), u"query"_s, favourite.FileName(), {}});
    if (m_nodes.count() > 1)
        m_nodes.setExpanded(root, true);
}

void FavouritesTree::addFavourite(const QString& QueryName,
                                  const std::optional<QString>& FileName) {
    try {
        if (!FileName)
            throw Error(Error::ObjectNotSet, QString(),
                        u"Object variable or With block variable not set"_s);
        appendFavourite(m_path, QueryName, *FileName);
    } catch (const Error& error) {
        m_host.msgBox(u"A problem was encountered whilst saving this query to favourites :"_s +
                          error.description(),
                      MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    Initialise_Query_Tree();
    const QString problem = readFavourites(m_path).problem;
    if (!problem.isEmpty())
        m_host.msgBox(u"The favorite was saved, but no favorites can be shown until the file is "
                      "mended. "_s +
                          problem,
                      MsgButtons::Ok, MsgIcon::Exclamation);
}

std::optional<QString> FavouritesTree::fileOf(const TreeNode* selected) {
    if (!selected || selected->Key() == rootKey)
        return std::nullopt;
    return selected->Tag();
}
