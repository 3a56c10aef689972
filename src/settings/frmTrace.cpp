#include "frmTrace.h"

#include "FormParts.h"
#include "Trace.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmTrace::frmTrace(TraceLog& trace)
    : m_trace(trace)
    , txtTrace(named(new QPlainTextEdit, u"txtTrace"_s, u"Trace log"_s)) {
    setObjectName(u"frmTrace"_s);
    setWindowTitle(u"Trace Log"_s);
    txtTrace->setReadOnly(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(txtTrace);
    constexpr QSize startSize(640, 420);
    resize(startSize);
    m_pending.setSingleShot(true);
    connect(&m_pending, &QTimer::timeout, this, &frmTrace::showLog);
}

frmTrace::~frmTrace() {
    m_trace.setListener({});
}

void frmTrace::showEvent(QShowEvent* event) {
    m_trace.setListener([this] { m_pending.start(0); });
    showLog();
    QWidget::showEvent(event);
}

void frmTrace::hideEvent(QHideEvent* event) {
    m_trace.setListener({});
    QWidget::hideEvent(event);
}

void frmTrace::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void frmTrace::showLog() {
    txtTrace->setPlainText(m_trace.text());
}
