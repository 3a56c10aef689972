#pragma once

#include <QObject>

#include <memory>

class HelpViewer;
class Host;

// F1 and the help commands: they open the help file, on Windows with the system's viewer. F1 shows
// the page of what has the focus.
class HelpCommands : public QObject {
    Q_OBJECT
public:
    // host tells of a help file that cannot be read; not owned.
    explicit HelpCommands(Host& host);
    ~HelpCommands() override;

    void showContents();
    void showSearch();
    // Closes the help window.
    void close();

protected:
    // Of the whole program, so that F1 is seen in its dialogs, too.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPage(const QString& page);

    Host& m_host;
    const std::unique_ptr<HelpViewer> m_viewer;
};
