#pragma once

#include <QWidget>
#include <memory>
#include <string>

#include "platform/qt/View.h"
#include "platform/ui/Control.h"

namespace varnith {

// The view of one control: a widget in the window's contents. The widget belongs to its parent; the view
// takes itself off the control and the widget's signals off itself when it goes.
class ControlView : public View {
  public:
    ControlView(Control& control, QWidget& widget, FrameClock& clock);

    QWidget& Widget() const { return widget_; }
    void Update() override;

    // The user presses a key while the widget has the focus. True if the control has taken it.
    bool PressKey(const std::string& key) { return control_.PressKey(key); }

  protected:
    // The object whose end cuts the widget's signals.
    QObject* Connections() { return &connections_; }

    // The room that the text takes in a font, what the control draws around it among it.
    virtual QSize TextRoom(const QFontMetrics& metrics) const;

  private:
    QFont Fitted(QFont font) const;

    Control& control_;
    QWidget& widget_;
    QObject connections_;
};

// Makes the view of a control, whatever its class, with its widget in that parent.
std::unique_ptr<ControlView> MakeView(Control& control, QWidget& parent, FrameClock& clock);

}  // namespace varnith
