#include "EditCommands.h"

#include "EditTarget.h"
#include "Host.h"
#include "RichTextBox.h"
#include "TextView.h"

#include <QLineEdit>
#include <QTreeWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

class LineEditTarget : public EditTarget {
public:
    explicit LineEditTarget(QLineEdit& field)
        : m_field(field) {}
    bool isReadOnly() const override { return m_field.isReadOnly(); }
    QString Copy() const override { return m_field.selectedText(); }
    void Paste(const QString& text) override { m_field.insert(text); }
    void SelectAll() override { m_field.selectAll(); }
    void Undo() override { m_field.undo(); }

private:
    QLineEdit& m_field;
};

class ListTarget : public EditTarget {
public:
    explicit ListTarget(QTreeWidget& list)
        : m_list(list) {}
    bool isReadOnly() const override { return true; }
    QString Copy() const override {
        QStringList lines;
        const QList<QTreeWidgetItem*> items = m_list.selectedItems();
        for (const QTreeWidgetItem* item : items)
            lines << item->text(0) + u'\t' + item->text(1);
        return lines.join("\r\n"_L1);
    }
    void Paste(const QString&) override {}
    void SelectAll() override { m_list.selectAll(); }
    void Undo() override {}

private:
    QTreeWidget& m_list;
};

void withTarget(QWidget* control, const std::function<void(EditTarget&)>& act) {
    if (auto* target = dynamic_cast<EditTarget*>(control)) {
        act(*target);
    } else if (auto* field = qobject_cast<QLineEdit*>(control)) {
        LineEditTarget adapter(*field);
        act(adapter);
    } else if (auto* list = qobject_cast<QTreeWidget*>(control)) {
        ListTarget adapter(*list);
        act(adapter);
    }
}

// With nothing selected the clipboard keeps what it has.
void putOnClipboard(Host& host, const QString& text) {
    if (!text.isEmpty())
        host.setClipboardText(text);
}

} // namespace

void EditCommands::Cut(QWidget* control, Host& host) {
    withTarget(control, [&](EditTarget& target) {
        putOnClipboard(host, target.isReadOnly() ? QString() : target.Cut());
    });
}

void EditCommands::Copy(QWidget* control, Host& host) {
    withTarget(control, [&](EditTarget& target) { putOnClipboard(host, target.Copy()); });
}

void EditCommands::Paste(QWidget* control, Host& host) {
    withTarget(control, [&](EditTarget& target) {
        if (!target.isReadOnly())
            target.Paste(host.clipboardText());
    });
}

void EditCommands::SelectAll(QWidget* control) {
    withTarget(control, [](EditTarget& target) { target.SelectAll(); });
}

void EditCommands::Undo(QWidget* control) {
    withTarget(control, [](EditTarget& target) { target.Undo(); });
}

void EditCommands::Print(QWidget* control, const QString& title, Host& host) {
    PrintRequest request;
    request.title = title;
    if (auto* editor = qobject_cast<RichTextBox*>(control)) {
        request.text = editor->Text();
        request.selection = editor->SelText();
    } else if (auto* results = qobject_cast<TextView*>(control)) {
        request.text = results->Text();
        request.selection = results->SelText();
    } else {
        host.msgBox(u"Please change output to CSV to print results."_s, MsgButtons::Ok,
                    MsgIcon::Exclamation);
        return;
    }
    host.print(request);
}
