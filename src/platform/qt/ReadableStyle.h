#pragma once

#include <QProxyStyle>

namespace varnith {

// The desktop's style with two corrections. Fusion draws the outline of a check box darker than the window,
// so on a dark desktop an empty box can't be seen: here the outline is derived from the text colour. Fusion
// also hardly shows the focus of some controls: here the focus frame has the highlight colour.
class ReadableStyle : public QProxyStyle {
  public:
    QIcon standardIcon(StandardPixmap kind, const QStyleOption* option, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace varnith
