#include <cassert>
#include <cstring>

#include "platform/qt/Decode.h"

// What is shown of a text stays on one line, and the text comes back from it unless something was replaced.
// Each text begins with a letter, because Qt drops a byte order mark at the beginning.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = "x" + std::string(reinterpret_cast<const char*>(data), size);
    const QString shown = varnith::Decoded(text);
    for (const QChar c : shown)
        assert(c >= QChar(0x20) && c != QChar(0x7F) && c != QChar::LineSeparator &&
               c != QChar::ParagraphSeparator);
    assert(varnith::Decoded(varnith::Encoded(shown)) == shown);
    const bool is_replaced = shown != QString::fromStdString(text);
    assert(varnith::Encoded(shown) == text || is_replaced || shown.contains(QChar::ReplacementCharacter));
    assert(varnith::DecodedCaption(text).replace("&&", "&") == shown);

    // A typed or pasted text is UTF-16, perhaps not a valid one, and becomes valid UTF-8.
    QString typed(static_cast<qsizetype>(1 + size / 2), QChar('x'));
    std::memcpy(typed.data() + 1, data, size / 2 * 2);
    const std::string encoded = varnith::Encoded(typed);
    assert(QString::fromStdString(encoded).toStdString() == encoded);
    assert(typed.isValidUtf16() == (QString::fromStdString(encoded) == typed));
    return 0;
}
