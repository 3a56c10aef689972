#pragma once

#include <QWidget>

class QTabBar;
class QTreeWidget;

// The tabs over the trees.
enum class LeftTab { Objects, Dictionary, Favourites };

// picLeft: a tab strip and one tree for each tab, of which the chosen tab's is seen.
class LeftPanel : public QWidget {
    Q_OBJECT
public:
    explicit LeftPanel(QWidget* parent = nullptr);

    QTreeWidget* trvObjects;
    QTreeWidget* trvDictionary;
    QTreeWidget* trvQueries;

Q_SIGNALS:
    void tabChosen(LeftTab tab);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QTreeWidget* makeTree(const QString& name, const QString& accessibleName);
    void showTree(int tab);

    QTabBar* tabLeft;
};
