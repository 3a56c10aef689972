#pragma once

#include <cmath>

// Layout is reckoned in twips, 1,440 to the inch; the screen in device-independent pixels, 96 to
// the inch whatever the scale.
inline constexpr int twipsPerPixel = 15;

inline int twipsToPixels(int twips) {
    return int(std::lround(double(twips) / twipsPerPixel));
}
inline int pixelsToTwips(double pixels) {
    return int(std::lround(pixels * twipsPerPixel));
}
