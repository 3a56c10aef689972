#pragma once

#include <QString>

#include <vector>

// A coloured stretch of a paragraph, in UTF-16 units. What no run covers has the default colour.
struct ColourRun {
    int start = 0;
    int length = 0;
    quint32 colour = 0; // 0xffRRGGBB, as in QRgb
    bool operator==(const ColourRun&) const = default;
};

struct RtfParagraph {
    QString text;                // without its line end
    std::vector<ColourRun> runs; // in order, not overlapping
    bool operator==(const RtfParagraph&) const = default;
};

// Splits at CR LF, CR or LF; never empty.
std::vector<RtfParagraph> plainParagraphs(QStringView text);

// An RTF document that RtfReader reads back as the same paragraphs. Characters beyond ASCII are
// written as \u.
QString writeRtf(const std::vector<RtfParagraph>& paragraphs);
