#include "HelpBook.h"
#include "HelpViewer.h"
#include "frmHelp.h"

#include <QApplication>
#include <QPointer>

namespace {

class HelpWindow : public HelpViewer {
public:
    bool showPage(const QString& file, const QString& page) override {
        if (!open(file))
            return false;
        m_window->showPage(page);
        bringToFront();
        return true;
    }

    bool showSearch(const QString& file) override {
        if (!open(file))
            return false;
        bringToFront();
        m_window->showSearch();
        return true;
    }

    void close() override { delete m_window; }

private:
    bool open(const QString& file) {
        // A modal dialog takes the input from all windows but its own.
        QWidget* dialog = QApplication::activeModalWidget();
        if (m_window && m_window->isVisible() && (!dialog || m_window->parentWidget() == dialog))
            return true;
        delete m_window;
        std::unique_ptr<HelpBook> book = HelpBook::open(file);
        if (!book)
            return false;
        m_window = new frmHelp(std::move(book), dialog); // deleted in close() or with the dialog
        return true;
    }

    void bringToFront() {
        m_window->show();
        m_window->raise();
        m_window->activateWindow();
    }

    QPointer<frmHelp> m_window;
};

} // namespace

std::unique_ptr<HelpViewer> makeHelpViewer() {
    return std::make_unique<HelpWindow>();
}
