#pragma once

#include <QProxyStyle>

namespace varnith {

// The desktop's style with one thing mended: Fusion draws the outline of a check box darker than the
// window, which on a dark desktop leaves an empty box unseen.
class ReadableStyle : public QProxyStyle {
  public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace varnith
