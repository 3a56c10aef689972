#pragma once

#include "DesktopHost.h"
#include "DialogDriver.h"
#include "MDIMain.h"
#include "Options.h"
#include "RichTextBox.h"
#include "StatusPanels.h"
#include "Trace.h"
#include "modDatabase.h"

#include <QAction>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>

// The whole program but for its main(): the real main window on the real host and the embedded
// database, with its dialogs driven by their object names.
struct Desk {
    DesktopHost host;
    TraceLog trace;
    modDatabase database;
    DialogDriver dialogs;
    MDIMain window{host, database, trace};

    explicit Desk(modDatabase::MakeConnection makeConnection = {})
        : database(host, trace, std::move(makeConnection)) {
        Options() = OptionsRecord();
    }

    void start() {
        window.Load();
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    // Waits for the login dialog and fills it in.
    void expectLogin(const QString& user, const QString& password, const QString& service) {
        dialogs.expect(QStringLiteral("frmLogin"), [=](QDialog& login) {
            login.findChild<QLineEdit*>(QStringLiteral("txtUserId"))->setText(user);
            login.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(password);
            login.findChild<QLineEdit*>(QStringLiteral("txtServiceName"))->setText(service);
            QTest::keyClick(&login, Qt::Key_Return);
        });
    }
    void startOnDemo() {
        start();
        expectLogin(QStringLiteral("demo"), QStringLiteral("demo"), QStringLiteral("DEMO"));
        window.perform(UserCommand::Connect);
        QVERIFY(window.Connected());
        window.activateWindow(); // without a window manager the focus does not come back by itself
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(dialogs.problems(), QStringList());
    }

    // Waits for a dialog and clicks one of its buttons.
    void expectClick(const QString& dialog, const QString& button) {
        dialogs.expect(dialog, [button](QDialog& shown) {
            QTest::mouseClick(shown.findChild<QPushButton*>(button), Qt::LeftButton);
        });
    }

    QAction* entry(const char* name) {
        return window.findChild<QAction*>(QString::fromLatin1(name));
    }
    QString status(int panel) {
        return window.findChild<StatusPanels*>(QStringLiteral("StatusBar"))->text(panel);
    }
    QMdiArea* area() { return window.findChild<QMdiArea*>(); }
    frmQuery* query() { return qobject_cast<frmQuery*>(area()->currentSubWindow()->widget()); }
    template<typename Control>
    Control* control(const char* name) {
        return query()->findChild<Control*>(QString::fromLatin1(name));
    }
    QStringList captions() {
        QStringList all;
        for (const QMdiSubWindow* sub : area()->subWindowList())
            all << sub->windowTitle();
        return all;
    }
};
