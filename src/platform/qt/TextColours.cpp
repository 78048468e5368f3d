#include "platform/qt/TextColours.h"

#include <QPalette>
#include <algorithm>

namespace varnith {

QColor ReadableOn(const QColor& background, const QColor& colour) {
    constexpr float Dark = 0.5f;
    constexpr float Readable = 0.78f;
    float hue, saturation, lightness;
    colour.getHslF(&hue, &saturation, &lightness);
    if (background.lightnessF() < Dark) lightness = std::max(lightness, Readable);
    return QColor::fromHslF(std::max(hue, 0.0f), saturation, lightness);
}

void SetBlackOnWhite(QWidget& widget) {
    QPalette colours = widget.palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, Qt::black);
    widget.setPalette(colours);
}

void SetTextColour(QWidget& label, const QColor& colour) {
    if (colour == Qt::black) return;
    QPalette colours = label.palette();
    colours.setColor(QPalette::WindowText, ReadableOn(colours.color(QPalette::Window), colour));
    label.setPalette(colours);
}

}  // namespace varnith
