#pragma once

#include <QString>
#include <string>

namespace varnith {

// What is drawn for a text of the program, which may hold the bytes of any file name: bytes that are no
// UTF-8 show as replacement characters, line breaks and other control characters as the signs that stand
// for them, so a name stays on its line.
QString Decoded(const std::string& text);

// The same as a caption in which "&" is to mark no mnemonic.
QString DecodedCaption(const std::string& text);

// The bytes of what the user has typed.
std::string Encoded(const QString& text);

}  // namespace varnith
