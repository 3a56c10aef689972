#pragma once

#include <QIcon>

#include <functional>

// The program's own drawings. An icon is drawn when it is painted, sharp at every scale, in inks
// that follow the desktop's palette, also when that changes between light and dark.

// One of the drawings: "toolbar/run", "tree/table", "message/error". The name must exist.
QIcon image(const QString& name);

// Whether the icon of a selected row keeps its inks, for styles that keep the text's colour there
// and lay a light ground below it, as Windows' own does. Else, and at first, it is drawn in the
// colour of selected text.
void keepInksWhenSelected(bool keeps);

// The drawing on the windows' frames, in colours of its own.
QIcon programIcon();

// The image list of the trees: a node's image key in, its icon out; a null icon for a key that is
// not in the list.
std::function<QIcon(const QString& key)> treeImages();
