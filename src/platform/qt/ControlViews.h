#pragma once

#include <QLabel>
#include <QWidget>
#include <memory>
#include <string>

#include "platform/qt/View.h"
#include "platform/ui/Control.h"

namespace varnith {

// The view of one control: a widget in the window's contents. The widget belongs to its parent widget and may
// outlive the view: the view's destructor disconnects the widget's signals.
class ControlView : public View {
  public:
    ControlView(Control& control, QWidget& widget, FrameClock& clock);

    QWidget& Widget() const { return widget_; }

    // The last place in the widget that Tab reaches.
    virtual QWidget& LastTabStop() const { return widget_; }

    void Update() override;

    // Makes a screen reader call the control by this label.
    virtual void SetLabel(QLabel& label) { label.setBuddy(&widget_); }

    // The user presses a key while the widget has the focus. Returns true if the control has handled it.
    bool PressKey(const std::string& key) { return control_.PressKey(key); }

  protected:
    // The context object for the widget's signals: its destruction disconnects them.
    QObject* Connections() { return &connections_; }

    // The space that the text needs in a font, including the frame that the control draws around it, in
    // pixels.
    virtual QSize TextRoom(const QFontMetrics& metrics) const;

  private:
    // The font, reduced until the text fits into the widget.
    QFont Fitted(QFont font) const;

    Control& control_;
    QWidget& widget_;
    QObject connections_;
};

// The horizontal flag of Qt for an alignment.
Qt::Alignment ToQt(TextAlign align);

// Creates the view of a control, whatever its class, and its widget as a child of `parent`.
std::unique_ptr<ControlView> MakeView(Control& control, QWidget& parent, FrameClock& clock);

}  // namespace varnith
