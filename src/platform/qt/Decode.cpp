#include "platform/qt/Decode.h"

namespace varnith {

namespace {
constexpr char16_t ControlPictures = 0x2400;  // the Unicode block "Control Pictures"
constexpr char16_t DeletePicture = 0x2421;
}  // namespace

QString Decoded(const std::string& text) {
    QString decoded = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& c : decoded) {
        if (c.unicode() < 0x20)
            c = QChar(static_cast<char16_t>(ControlPictures + c.unicode()));
        else if (c.unicode() == 0x7F)
            c = QChar(DeletePicture);
    }
    return decoded;
}

QString DecodedCaption(const std::string& text) {
    return Decoded(text).replace(u'&', QStringLiteral("&&"));
}

std::string Encoded(const QString& text) {
    return text.toStdString();
}

}  // namespace varnith
