#pragma once

#include <QColor>
#include <QWidget>

namespace varnith {

// Has a widget write black on white, whatever the desktop's colours.
void SetBlackOnWhite(QWidget& widget);

// Sets the colour of a label's text. Black stands for the desktop's own colour of texts; on a dark window
// another colour is lightened, in its hue, until it can be read.
void SetTextColour(QWidget& label, const QColor& colour);

}  // namespace varnith
