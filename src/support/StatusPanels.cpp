#include "StatusPanels.h"

#include "FormParts.h"

#include <QLabel>
#include <QPainter>

using namespace Qt::StringLiterals;

class ElidedLabel : public QLabel {
public:
    explicit ElidedLabel(QSizePolicy::Policy width) {
        setTextFormat(Qt::PlainText);
        setSizePolicy(width, QSizePolicy::Preferred);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        setToolTip(shown == text() ? QString() : text());
    }
};

StatusPanels::StatusPanels(const QString& objectName, const std::vector<int>& shares) {
    named(this, objectName, u"Status bar"_s);
    setSizeGripEnabled(false); // the windows that hold a bar have frames of their own
    for (size_t i = 0; i < shares.size(); ++i) {
        const QString number = QString::number(i + 1);
        const auto width = shares[i] > 0 ? QSizePolicy::Ignored : QSizePolicy::Preferred;
        auto* panel =
            named(new ElidedLabel(width), objectName + u"_Panel"_s + number, u"Status "_s + number);
        addWidget(panel, shares[i]);
        m_panels.push_back(panel);
    }
    m_texts.resize(shares.size());
}

QString StatusPanels::text(int panel) const {
    return m_texts[size_t(panel) - 1];
}

void StatusPanels::setText(int panel, const QString& text) {
    m_texts[size_t(panel) - 1] = text;
    show(panel, text);
}

void StatusPanels::setPassingText(int panel, const QString& text) {
    show(panel, text.isEmpty() ? m_texts[size_t(panel) - 1] : text);
}

void StatusPanels::show(int panel, const QString& text) {
    QLabel* label = m_panels[size_t(panel) - 1];
    label->setText(text);
    label->setAccessibleDescription(text);
}
