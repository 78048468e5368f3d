#pragma once

#include <QString>
#include <string>

namespace varnith {

// A text of the program as it is shown. It may be a file name and hold any bytes: bytes that aren't UTF-8
// become replacement characters. Line breaks and other control characters become their Unicode symbols, so
// that a name stays on one line.
QString Decoded(const std::string& text);

// The same for a caption: "&" is doubled, so that it doesn't mark a mnemonic.
QString DecodedCaption(const std::string& text);

// What the user has typed, in UTF-8.
std::string Encoded(const QString& text);

}  // namespace varnith
