#include "frmHelp.h"

#include "FormParts.h"
#include "HelpBook.h"
#include "HelpPage.h"
#include "Images.h"
#include "Version.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int pageRole = Qt::UserRole;

enum HelpTab { ContentsTab, IndexTab, SearchTab };

QListWidgetItem* addLine(QListWidget& list, const QString& text, const QString& page) {
    auto* item = new QListWidgetItem(text, &list);
    item->setData(pageRole, page);
    return item;
}

QWidget* stacked(std::initializer_list<QWidget*> widgets) {
    auto* tab = new QWidget;
    auto* layout = new QVBoxLayout(tab);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    return tab;
}

} // namespace

frmHelp::frmHelp(std::unique_ptr<HelpBook> book, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_book(std::move(book))
    , txtPage(named(new HelpPage(*m_book), u"txtPage"_s, u"Help page"_s))
    , tabHelp(named(new QTabWidget, u"tabHelp"_s, u"Contents, index and search"_s))
    , trvContents(named(new QTreeWidget, u"trvContents"_s, u"Contents"_s))
    , txtIndex(named(new QLineEdit, u"txtIndex"_s, u"Word of the index"_s))
    , lstIndex(named(new QListWidget, u"lstIndex"_s, u"Index"_s))
    , txtSearch(named(new QLineEdit, u"txtSearch"_s, u"Words to search for"_s))
    , lstResults(named(new QListWidget, u"lstResults"_s, u"Pages found"_s))
    , lblResults(named(new QLabel, u"lblResults"_s, u"Number of pages found"_s))
    , txtFind(named(new QLineEdit, u"txtFind"_s, u"Find in this page"_s)) {
    setObjectName(u"frmHelp"_s);
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME) + u" Help"_s);
    tabHelp->addTab(contentsTab(), u"&Contents"_s);
    tabHelp->addTab(indexTab(), u"&Index"_s);
    tabHelp->addTab(searchTab(), u"&Search"_s);
    auto* sides = new QSplitter;
    sides->addWidget(tabHelp);
    sides->addWidget(txtPage);
    sides->setChildrenCollapsible(false);
    constexpr int leftWidth = 270;
    constexpr int rightWidth = 610;
    sides->setSizes({leftWidth, rightWidth});
    sides->setStretchFactor(1, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(makeBar());
    layout->addWidget(sides, 1);
    wire();
    constexpr QSize startSize(leftWidth + rightWidth, 600);
    resize(startSize);
    Centre_Form(*this);
}

frmHelp::~frmHelp() {
    // The page reads from the book, which goes before the controls; and the lists show pages.
    trvContents->disconnect(this);
    lstIndex->disconnect(this);
    lstResults->disconnect(this);
    delete txtPage;
}

QWidget* frmHelp::contentsTab() {
    trvContents->setHeaderHidden(true);
    std::vector<QTreeWidgetItem*> path{trvContents->invisibleRootItem()};
    for (const HelpEntry& entry : m_book->contents()) {
        path.resize(size_t(entry.level) + 1);
        auto* item = new QTreeWidgetItem(path.back(), {entry.title});
        item->setData(0, pageRole, entry.page);
        path.push_back(item);
    }
    trvContents->expandAll();
    return stacked({trvContents});
}

QWidget* frmHelp::indexTab() {
    txtIndex->setPlaceholderText(u"Type a word"_s);
    txtIndex->setClearButtonEnabled(true);
    for (const HelpEntry& entry : m_book->index())
        addLine(*lstIndex, entry.title, entry.page);
    return stacked({txtIndex, lstIndex});
}

QWidget* frmHelp::searchTab() {
    txtSearch->setPlaceholderText(u"Words, then Enter"_s);
    txtSearch->setClearButtonEnabled(true);
    lstResults->setWordWrap(true);
    lstResults->setAlternatingRowColors(true);
    return stacked({txtSearch, lblResults, lstResults});
}

QToolBar* frmHelp::makeBar() {
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const QString& name, const QString& text, const QString& drawing,
                         QKeySequence::StandardKey key) {
        QAction* action = bar->addAction(image(u"toolbar/"_s + drawing), text);
        action->setObjectName(name);
        action->setShortcuts(key);
        action->setToolTip(text + u" ("_s + action->shortcut().toString() + u')');
        return action;
    };
    QAction* back = add(u"cmdBack"_s, u"Back"_s, u"back"_s, QKeySequence::Back);
    QAction* forward = add(u"cmdForward"_s, u"Forward"_s, u"forward"_s, QKeySequence::Forward);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QAction::triggered, txtPage, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, txtPage, &QTextBrowser::forward);
    connect(txtPage, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(txtPage, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    auto* gap = new QWidget;
    gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(gap);
    constexpr int findWidth = 220;
    txtFind->setMaximumWidth(findWidth);
    txtFind->setPlaceholderText(u"Find in this page (Ctrl+F)"_s);
    txtFind->setClearButtonEnabled(true);
    bar->addWidget(txtFind);
    return bar;
}

void frmHelp::wire() {
    connect(trvContents, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item && !item->data(0, pageRole).toString().isEmpty())
            txtPage->showPage(item->data(0, pageRole).toString());
    });
    for (QListWidget* list : {lstIndex, lstResults}) {
        connect(list, &QListWidget::currentItemChanged, this, [this, list](QListWidgetItem* item) {
            if (!item)
                return;
            txtPage->showPage(item->data(pageRole).toString());
            txtPage->markWords(list == lstResults ? m_searched : QString());
        });
    }
    connect(txtPage, &QTextBrowser::sourceChanged, this, &frmHelp::followPage);
    connect(txtIndex, &QLineEdit::textChanged, this, &frmHelp::filterIndex);
    connect(txtIndex, &QLineEdit::returnPressed, this, [this] { lstIndex->setFocus(); });
    connect(txtSearch, &QLineEdit::returnPressed, this, &frmHelp::search);
    connect(txtFind, &QLineEdit::returnPressed, this, [this] { findInPage(false); });
    auto* find = new QAction(this);
    find->setShortcuts(QKeySequence::Find);
    connect(find, &QAction::triggered, this, [this] {
        txtFind->setFocus();
        txtFind->selectAll();
    });
    auto* findBefore = new QAction(this);
    findBefore->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F3));
    connect(findBefore, &QAction::triggered, this, [this] { findInPage(true); });
    auto* findNext = new QAction(this);
    findNext->setShortcut(QKeySequence(Qt::Key_F3));
    connect(findNext, &QAction::triggered, this, [this] { findInPage(false); });
    addActions({find, findNext, findBefore});
}

// The contents show where the page stands, however it was reached. The browser itself knows its new
// source only later.
void frmHelp::followPage(const QUrl& source) {
    const QSignalBlocker quiet(trvContents);
    for (QTreeWidgetItemIterator item(trvContents); *item; ++item) {
        if ((*item)->data(0, pageRole).toString() == source.path()) {
            trvContents->setCurrentItem(*item);
            return;
        }
    }
}

void frmHelp::filterIndex(const QString& text) {
    for (int row = 0; row < lstIndex->count(); ++row)
        lstIndex->item(row)->setHidden(
            !lstIndex->item(row)->text().contains(text, Qt::CaseInsensitive));
}

void frmHelp::search() {
    m_searched = txtSearch->text();
    lstResults->clear();
    for (const HelpBook::Match& match : m_book->search(m_searched))
        addLine(*lstResults, match.title + u'\n' + match.excerpt, match.page);
    const int count = lstResults->count();
    lblResults->setText(count == 0   ? u"No page holds all of these words."_s
                        : count == 1 ? u"1 page"_s
                                     : u"%1 pages"_s.arg(count));
    if (count > 0) {
        lstResults->setCurrentRow(0);
        lstResults->setFocus();
    }
}

void frmHelp::findInPage(bool backward) {
    const QString text = txtFind->text();
    const auto flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (text.isEmpty() || txtPage->find(text, flags))
        return;
    // From the other end once more.
    txtPage->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    txtPage->find(text, flags);
}

void frmHelp::showPage(const QString& page) {
    tabHelp->setCurrentIndex(ContentsTab);
    txtPage->showPage(page.isEmpty() ? m_book->firstPage() : page);
    txtPage->setFocus();
}

void frmHelp::showSearch() {
    if (txtPage->page().isEmpty())
        txtPage->showPage(m_book->firstPage());
    tabHelp->setCurrentIndex(SearchTab);
    txtSearch->setFocus();
    txtSearch->selectAll();
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
