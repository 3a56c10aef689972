#pragma once

#include "Host.h"

#include <QStringList>

#include <deque>

// Answers from lists and writes every call into one ordered log.
class RecordingHost : public Host {
public:
    QStringList log;
    std::deque<Answer> answers;                   // for message boxes; Ok when used up
    std::deque<std::optional<QString>> openFiles; // cancel when used up
    std::deque<std::optional<QString>> saveFiles; // cancel when used up
    QString clipboard;
    std::deque<float> clock; // 0 when used up, else the last stays
    bool printAccepted = true;
    PrintRequest printed;

    Answer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon,
                  const QString& title) override {
        log << QStringLiteral("msgbox[%1%2%3] %4")
                   .arg(buttons == MsgButtons::Ok ? QStringLiteral("ok")
                                                  : QStringLiteral("yes/no/cancel"),
                        icon == MsgIcon::Exclamation   ? QStringLiteral("!")
                        : icon == MsgIcon::Information ? QStringLiteral("i")
                                                       : QString(),
                        title.isEmpty() ? QString() : QStringLiteral(" ") + title, text);
        return take(answers, Answer::Ok);
    }
    void showError(const QString& number, const QString& source,
                   const QString& description) override {
        log << QStringLiteral("error %1 | %2 | %3").arg(number, source, description);
    }
    void setMousePointer(MousePointer pointer) override {
        log << QStringLiteral("pointer %1").arg(int(pointer));
    }
    std::optional<QString> openFileName(const FileDialogRequest& request) override {
        log << QStringLiteral("open dialog %1").arg(request.filter);
        return take(openFiles, std::optional<QString>());
    }
    std::optional<QString> saveFileName(const FileDialogRequest& request) override {
        log << QStringLiteral("save dialog %1 %2 %3")
                   .arg(request.defaultExtension, request.filter,
                        request.overwritePrompt ? QStringLiteral("asks") : QStringLiteral("-"));
        return take(saveFiles, std::optional<QString>());
    }
    bool print(const PrintRequest& request) override {
        log << QStringLiteral("print %1").arg(request.title);
        printed = request;
        return printAccepted;
    }
    QString clipboardText() override { return clipboard; }
    void setClipboardText(const QString& text) override { clipboard = text; }
    float timer() override {
        if (clock.size() > 1)
            return take(clock, 0.0f);
        return clock.empty() ? 0.0f : clock.front();
    }

private:
    template<typename T>
    static T take(std::deque<T>& list, T otherwise) {
        if (list.empty())
            return otherwise;
        T first = list.front();
        list.pop_front();
        return first;
    }
};
