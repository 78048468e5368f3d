#pragma once

#include <QColor>
#include <QWidget>

namespace varnith {

// The colour; on a dark background lightened, at the same hue, so that it can be read.
QColor ReadableOn(const QColor& background, const QColor& colour);

// Sets black text on white, whatever the desktop's colours.
void SetBlackOnWhite(QWidget& widget);

// Makes a window's contents white. On a dark desktop the controls in it get the colours of a light one.
void SetWhiteBackground(QWidget& contents);

// Sets the colour of a label's text. Black leaves the desktop's own text colour; any other is made readable
// on the window.
void SetTextColour(QWidget& label, const QColor& colour);

}  // namespace varnith
