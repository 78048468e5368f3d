#include "platform/qt/Decode.h"

namespace varnith {

namespace {

constexpr char16_t ControlPictures = 0x2400;  // the Unicode block "Control Pictures"
constexpr char16_t DeletePicture = 0x2421;
constexpr char16_t NewlinePicture = 0x2424;

QChar Visible(QChar c) {
    if (c.unicode() < 0x20) return QChar(static_cast<char16_t>(ControlPictures + c.unicode()));
    if (c.unicode() == 0x7F) return QChar(DeletePicture);
    // Qt breaks a line at these as well, and a list shows no more than the first line of a text.
    if (c == QChar::LineSeparator || c == QChar::ParagraphSeparator) return QChar(NewlinePicture);
    return c;
}

}  // namespace

QString Decoded(const std::string& text) {
    QString decoded = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& c : decoded) c = Visible(c);
    return decoded;
}

QString DecodedCaption(const std::string& text) {
    return Decoded(text).replace(u'&', QStringLiteral("&&"));
}

std::string Encoded(const QString& text) {
    return text.toStdString();
}

}  // namespace varnith
