#include "frmSplash.h"

#include "FormParts.h"
#include "Version.h"
#include "VersionText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

using namespace Qt::StringLiterals;

frmSplash::frmSplash()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint)
    , Timer1(new QTimer(this)) {
    setObjectName(u"frmSplash"_s);
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME));
    Timer1->setObjectName(u"Timer1"_s);
    Timer1->setSingleShot(true);
    connect(Timer1, &QTimer::timeout, this, &frmSplash::goOn);

    constexpr int iconSize = 72;
    QLabel* icon = imageLabel(u"program/quillmate"_s, iconSize, *this);
    auto* texts = new QVBoxLayout;
    texts->addStretch(1);
    texts->addWidget(productLabel());
    texts->addWidget(new QLabel(u"A workbench for querying Oracle"_s));
    texts->addWidget(named(new QLabel(versionText()), u"lblVersion"_s, u"Version"_s));
    texts->addStretch(1);
    constexpr int margin = 28;
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin + margin, margin);
    layout->setSpacing(margin);
    layout->addWidget(icon);
    layout->addLayout(texts);
    Centre_Form(*this);
}

void frmSplash::showEvent(QShowEvent* event) {
    constexpr int longestWait = 200; // milliseconds, for a desktop that never paints it
    Timer1->start(longestWait);
    QWidget::showEvent(event);
}

void frmSplash::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    if (Timer1->isActive())
        Timer1->start(0);
}

void frmSplash::keyPressEvent(QKeyEvent*) {
    goOn();
}

void frmSplash::goOn() {
    if (isHidden())
        return;
    Timer1->stop();
    Q_EMIT Timer();
    close();
}
