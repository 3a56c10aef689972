#pragma once

#include <QString>

// "Text File (*.txt)|*.txt|All Files (*.*)|*.*" as the toolkit's file dialogs want it. "*.*" means
// every file, also one without a dot.
QString toolkitFilter(const QString& filter);
