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

// A window of the program as a window of the desktop. When it goes, its frame vanishes at once but is only
// deleted at the event loop's next turn: the window may be closed from within one of its own events.
class QtWindow : public QObject, public View, public WindowView {
  public:
    // Shows the window. REQUIRES: window and desktop outlive it.
    QtWindow(Window& window, QtDesktop& desktop, FrameClock& clock);
    ~QtWindow() override;

    void BringToFront() override;
    void SetBlocked(bool blocked) override;
    void Update() override;

  protected:
    // Sees what happens to the frame, its contents and its place on the screen.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void BuildFrame();
    void BuildControls();
    void PlaceOnScreen();
    void Activated();
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
    std::unique_ptr<Shield> shield_;  // while a modal window keeps the contents from answering
    std::int32_t refreshes_ = 0;
};

}  // namespace varnith
