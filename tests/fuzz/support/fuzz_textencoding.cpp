#include "TextEncoding.h"

#include <cstdint>
#include <cstdlib>

// Any bytes as a text file: what is read is what is written, in whatever encoding, and writing it
// as it was read gives one text for good.

namespace {

void require(bool held) {
    if (!held)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    using enum TextEncoding;
    const QByteArrayView bytes(data, qsizetype(size));
    const DecodedText read = decodeText(bytes);
    for (const TextEncoding wanted : {Utf8, Windows1252, Utf16LE, Utf16BE, SystemCodePage}) {
        const EncodedText written = encodeText(read.text, wanted);
        require(written.encoding == wanted || written.encoding == Utf8);
        const QString again = decodeText(written.bytes).text;
        require(again == read.text || !read.text.isValidUtf16());
    }
    const EncodedText same = encodeText(read.text, read.encoding);
    require(same.encoding == read.encoding || !read.text.isValidUtf16());
    return 0;
}
