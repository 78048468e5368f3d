#pragma once

#include <QColor>
#include <QWidget>

namespace varnith {

// The colour, lightened in its hue until it can be told from a dark background.
QColor ReadableOn(const QColor& background, const QColor& colour);

// Has a widget write black on white, whatever the desktop's colours.
void SetBlackOnWhite(QWidget& widget);

// Sets the colour of a label's text. Black stands for the desktop's own colour of texts; another one is made
// readable on the window.
void SetTextColour(QWidget& label, const QColor& colour);

}  // namespace varnith
