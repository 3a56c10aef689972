#pragma once

#include <QWidget>

#include <array>
#include <utility>
#include <vector>

class FlexGrid;
class QTreeWidget;
class TabStrip;
class TextView;

// picPanelBottomRight: the tab strip and the result views under it, of which the selected tab's is
// seen.
class ResultPanel : public QWidget {
    Q_OBJECT
public:
    ResultPanel();

    TabStrip* TabStrip1;
    FlexGrid* grdResults;
    TextView* txtResults;
    TextView* txtMessage;
    QTreeWidget* lvwStats;
    FlexGrid* grdEP;

    // Whether the tab "results" shows the grid or the text.
    void showGridInResults(bool grid);
    // Adds and selects the tab, or removes it; what is selected then follows each tab's own rule.
    void setResultsTab(bool on);
    void setPlanTab(bool on);
    void selectTab(const QString& key);
    void selectFirstTab();
    void setStatistics(const std::vector<std::pair<QString, QString>>& rows);

    QWidget* selectedView() const;
    // Shows the selected tab's view and hides the others.
    void showSelectedView();

Q_SIGNALS:
    void tabClicked();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* viewOf(const QString& key) const;
    std::array<QWidget*, 5> views() const;

    bool m_gridInResults = true;
};
