#pragma once

#include <QStatusBar>

#include <vector>

class ElidedLabel;

// A status bar of text panels, counted from 1 as in the code that writes them. Panel n is found by
// the bar's object name + "_Panel" + n. A text too long for its panel ends in an ellipsis and is
// whole in the tool tip.
class StatusPanels : public QStatusBar {
    Q_OBJECT
public:
    // shares: how the width is divided between the panels; one with 0 is as wide as its text.
    StatusPanels(const QString& objectName, const std::vector<int>& shares);

    QString text(int panel) const;
    void setText(int panel, const QString& text);
    // Shown in place of the panel's text until it is empty or the panel gets another text.
    void setPassingText(int panel, const QString& text);

private:
    void show(int panel, const QString& text);

    std::vector<ElidedLabel*> m_panels;
    std::vector<QString> m_texts;
};
