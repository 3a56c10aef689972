#pragma once

#include <functional>

class StatementWatch;

// Runs the work on a thread of its own and waits for it in the watch's company. What the work
// throws is thrown here. askToStop is called once when the watch wishes it.
// False when the work did not end within the patience after that: it then goes on by itself and
// must own everything that it touches.
bool runWatched(std::function<void()> work, StatementWatch& watch,
                const std::function<void()>& askToStop);
