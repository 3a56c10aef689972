#pragma once

// Overwrites in a text with "user|password|service", or a part of one, what belongs to the
// password. barsBefore: how many "|" stand before the text; returns how many were met with it.
template<typename Character>
int scrubPassword(Character* text, int barsBefore) {
    int bars = barsBefore;
    for (; *text; ++text) {
        if (*text == Character('|'))
            ++bars;
        else if (bars == 1)
            *text = Character('*');
    }
    return bars;
}
