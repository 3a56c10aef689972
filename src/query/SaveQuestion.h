#pragma once

#include "Host.h"

class QWidget;

// The two questions whether the changes of a query are to be saved. name: its file, else its
// caption.

// For a window closed by its own close box.
Answer askInMessageBox(Host& host, const QString& name);
// For a window closed by a command, when more may follow: "No To All" is offered.
Answer askInSavePrompt(const QString& name, QWidget* parent);
