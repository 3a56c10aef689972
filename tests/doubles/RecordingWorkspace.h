#pragma once

#include "Workspace.h"

#include <QStringList>

// Writes what a query window asks of the main window into a log and answers from its fields.
class RecordingWorkspace : public Workspace {
public:
    QStringList log;
    bool saves = true;
    bool noToAll = false;

    bool Save_File(bool saveAs) override {
        log << (saveAs ? QStringLiteral("save as") : QStringLiteral("save"));
        return saves;
    }
    bool NoToAll() const override { return noToAll; }
    void setNoToAll(bool on) override { noToAll = on; }
    void tickOutputMode(const QString& mode) override { log << QStringLiteral("tick ") + mode; }
    void enableSavedFileEntry(bool on) override {
        log << (on ? QStringLiteral("has a file") : QStringLiteral("has no file"));
    }
};
