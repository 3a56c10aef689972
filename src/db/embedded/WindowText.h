#pragma once

#include "Scope.h"

#include <string>
#include <vector>

namespace ora {

class Binding;
struct Window;

// The pieces of OVER ( … ) as SQL.
struct WindowText {
    std::string partition; // "PARTITION BY …" or empty
    std::string order;     // "ORDER BY …" or empty
    std::string frame;
    // Where the engine cannot find the frame itself: what FrameRows takes behind the arguments.
    std::vector<std::string> bounds;

    std::string over() const { return " OVER (" + with(order, frame) + ')'; }
    std::string wholePartition() const { return " OVER (" + partition + ')'; }
    std::string with(const std::string& sorted, const std::string& framed) const;
    // name(arguments) OVER ( … )
    std::string call(const std::string& name, std::vector<std::string> arguments) const;
};

// BindFrame.cpp
WindowText windowText(Binding& binding, Scope& scope, const Window& window);

} // namespace ora
