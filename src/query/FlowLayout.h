#pragma once

#include <QLayout>

#include <memory>
#include <vector>

// Puts its items side by side and goes on in the next row where the width ends, so that a narrow
// window cuts nothing off.
class FlowLayout : public QLayout {
    Q_OBJECT
public:
    FlowLayout() = default;
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return int(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    // Gives each item its place in a rectangle of that width; returns the height that is used.
    template<typename Place>
    int flow(const QRect& rect, Place place) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};
