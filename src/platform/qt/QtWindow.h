#pragma once

#include <QFocusFrame>
#include <QMainWindow>
#include <memory>
#include <vector>

#include "platform/qt/ControlViews.h"
#include "platform/qt/MenuBarView.h"
#include "platform/qt/Shield.h"
#include "platform/qt/View.h"
#include "platform/ui/Desktop.h"
#include "platform/ui/Window.h"

namespace varnith {

class QtDesktop;

// A Window as a window of the desktop. The destructor hides the frame at once but leaves its deletion to the
// event loop (deleteLater), because a handler of one of its own events may be closing the window.
class QtWindow : public QObject, public View, public WindowView {
  public:
    // Shows the window. REQUIRES: window, desktop and clock outlive this object.
    QtWindow(Window& window, QtDesktop& desktop, FrameClock& clock);
    ~QtWindow() override;

    void BringToFront() override;
    void SetBlocked(bool blocked) override;
    void SetPointer(PointerShape shape) override;
    void Update() override;

  protected:
    // Watches the frame, its contents and its window handle.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void BuildFrame();
    void AddDesktopKeys();
    void BuildControls();
    void SetTabOrder();
    // REQUIRES: the window has the control, and its view is built.
    ControlView& ViewOf(const Control& control) const;
    void PlaceOnScreen();
    void Activated();
    // The modal window that blocks this one; null if none does.
    QtWindow* ModalInFront() const;
    bool KeyGoesToModal() const;
    bool PassKeyOn(QKeyEvent& event);
    bool DeliverKeyPress(const QKeyEvent& event);
    bool PressDefaultButton();
    ControlView* FocusedView() const;

    Window& window_;
    QtDesktop& desktop_;
    FrameClock& clock_;
    QMainWindow* frame_;
    QWidget* contents_;
    std::unique_ptr<MenuBarView> menus_;
    std::vector<std::unique_ptr<ControlView>> views_;
    QFocusFrame* focus_ring_;
    std::unique_ptr<Shield> shield_;  // not null while the window is blocked
    std::int32_t refreshes_ = 0;      // the value of Window::Refreshes() at the last redrawing
};

}  // namespace varnith
