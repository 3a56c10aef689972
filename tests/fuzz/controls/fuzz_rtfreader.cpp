#include "RtfReader.h"

#include <cstdint>
#include <cstdlib>

// Any bytes as UTF-16 behind the header: no crash, no hang, sound runs, and what is written from
// the result is read back as the same.

namespace {

void require(bool held) {
    if (!held)
        std::abort();
}

void checkRuns(const RtfParagraph& paragraph) {
    int end = 0;
    for (const ColourRun& run : paragraph.runs) {
        require(run.start >= end && run.length > 0);
        end = run.start + run.length;
    }
    require(end <= paragraph.text.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    const QString body =
        size % 2 == 0 ? QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size))
                      : QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString rtf = QStringLiteral("{\\rtf1{\\colortbl;\\red1\\green2\\blue3;;}") + body;
    const std::vector<RtfParagraph> paragraphs = RtfReader::read(rtf);
    require(!paragraphs.empty());
    for (const RtfParagraph& paragraph : paragraphs)
        checkRuns(paragraph);
    require(RtfReader::read(writeRtf(paragraphs)) == paragraphs);
    return 0;
}
