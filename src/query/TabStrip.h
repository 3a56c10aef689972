#pragma once

#include <QTabBar>

// A tab strip whose tabs are told apart by their keys.
class TabStrip : public QTabBar {
    Q_OBJECT
public:
    // tabKeys from left to right as they are meant to stand; a tab takes its place among them.
    struct Tab {
        QString key;
        QString caption;
    };
    explicit TabStrip(std::vector<Tab> order);

    bool has(const QString& key) const { return indexOf(key) >= 0; }
    // Adds the tab when it is missing.
    void add(const QString& key);
    void remove(const QString& key);
    // Nothing when there is no such tab.
    void select(const QString& key);
    QString selectedKey() const;
    // What the tabs take of it; below them is the frame of what they show.
    int tabHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int indexOf(const QString& key) const;
    int placeOf(const QString& key) const;

    std::vector<Tab> m_order;
};
