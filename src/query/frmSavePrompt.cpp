#include "frmSavePrompt.h"

#include "FormParts.h"
#include "Images.h"
#include "Version.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

struct PromptButton {
    QString name;
    QString caption;
    Answer answer;
};

} // namespace

frmSavePrompt::frmSavePrompt(const QString& message, QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"frmSavePrompt"_s);
    setWindowTitle(QString::fromLatin1(QUILLMATE_NAME));
    auto* label = named(new QLabel(message), u"lblMessage"_s, u"Question"_s);
    label->setTextFormat(Qt::PlainText); // a file name may look like markup
    wrapWhenWide(*label);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    const PromptButton table[] = {{u"cmdYes"_s, u"&Yes"_s, Answer::Yes},
                                  {u"cmdNo"_s, u"&No"_s, Answer::No},
                                  {u"cmdNoToAll"_s, u"No To &All"_s, Answer::NoToAll},
                                  {u"cmdCancel"_s, u"Cancel"_s, Answer::Cancel}};
    for (const PromptButton& line : table) {
        auto* button = named(new QPushButton(line.caption), line.name, line.caption);
        button->setAccessibleName(QString(line.caption).remove(u'&'));
        connect(button, &QPushButton::clicked, this, [this, answer = line.answer] {
            Response = answer;
            hide();
        });
        buttons->addWidget(button);
    }
    auto* question = new QHBoxLayout;
    question->addWidget(imageLabel(u"message/exclamation"_s, messageIconSize, *this));
    question->addWidget(label, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(question);
    layout->addLayout(buttons);
    Centre_Form(*this);
}
