#pragma once

#include <QWidget>

class QTabBar;
class TreeView;

// The tabs over the trees.
enum class LeftTab { Objects, Dictionary, Favourites };

// picLeft: a tab strip and one tree for each tab, of which the chosen tab's is seen.
class LeftPanel : public QWidget {
    Q_OBJECT
public:
    explicit LeftPanel(QWidget* parent = nullptr);

    // Each over nodes of its own, which live as long as it.
    TreeView* trvObjects;
    TreeView* trvDictionary;
    TreeView* trvQueries;

    LeftTab chosenTab() const;
    // The chosen tab's.
    TreeView* shownTree() const;

Q_SIGNALS:
    // By mouse or keyboard; also when the tab that is shown already is clicked.
    void tabChosen(LeftTab tab);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    TreeView* makeTree(const QString& name, const QString& accessibleName);
    void showTree(int tab);

    QTabBar* tabLeft;
};
