#pragma once

#include <QProxyStyle>

namespace varnith {

// The desktop's style with two things mended. Fusion draws the outline of a check box darker than the window,
// which on a dark desktop leaves an empty box unseen. And it shows of some controls hardly that they have the
// focus, so the ring around the one that has it is drawn in the colour of what is highlighted.
class ReadableStyle : public QProxyStyle {
  public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace varnith
