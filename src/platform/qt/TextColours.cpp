#include "platform/qt/TextColours.h"

#include <QPalette>
#include <algorithm>

namespace varnith {

void SetBlackOnWhite(QWidget& widget) {
    QPalette colours = widget.palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, Qt::black);
    widget.setPalette(colours);
}

void SetTextColour(QWidget& label, const QColor& colour) {
    constexpr float Dark = 0.5f;
    constexpr float Readable = 0.78f;
    if (colour == Qt::black) return;
    QPalette colours = label.palette();
    float hue, saturation, lightness;
    colour.getHslF(&hue, &saturation, &lightness);
    if (colours.color(QPalette::Window).lightnessF() < Dark) lightness = std::max(lightness, Readable);
    colours.setColor(QPalette::WindowText, QColor::fromHslF(std::max(hue, 0.0f), saturation, lightness));
    label.setPalette(colours);
}

}  // namespace varnith
