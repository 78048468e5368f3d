#include "platform/qt/TextColours.h"

#include <QPalette>
#include <algorithm>

namespace varnith {

namespace {

bool IsDark(const QColor& background) {
    constexpr float Dark = 0.5f;
    return background.lightnessF() < Dark;
}

}  // namespace

QColor ReadableOn(const QColor& background, const QColor& colour) {
    constexpr float Readable = 0.78f;
    float hue, saturation, lightness, alpha;
    colour.getHslF(&hue, &saturation, &lightness, &alpha);
    if (IsDark(background)) lightness = std::max(lightness, Readable);
    return QColor::fromHslF(std::max(hue, 0.0f), saturation, lightness, alpha);
}

void SetBlackOnWhite(QWidget& widget) {
    QPalette colours = widget.palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, Qt::black);
    widget.setPalette(colours);
}

void SetWhiteBackground(QWidget& contents) {
    QPalette colours = contents.palette();
    if (IsDark(colours.color(QPalette::Window))) {
        constexpr QColor LightButton(239, 239, 239);
        QPalette light(LightButton);
        for (const auto role : {QPalette::Highlight, QPalette::HighlightedText})
            light.setBrush(role, colours.brush(role));
        colours = light;
    }
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::WindowText, Qt::black);
    contents.setPalette(colours);
    contents.setAutoFillBackground(true);
}

void SetTextColour(QWidget& label, const QColor& colour) {
    if (colour == Qt::black) return;
    QPalette colours = label.palette();
    colours.setColor(QPalette::WindowText, ReadableOn(colours.color(QPalette::Window), colour));
    label.setPalette(colours);
}

}  // namespace varnith
