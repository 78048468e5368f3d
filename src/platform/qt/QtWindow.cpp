#include "platform/qt/QtWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QWindow>
#include <algorithm>

#include "platform/qt/Decode.h"
#include "platform/qt/QtDesktop.h"
#include "platform/qt/TextColours.h"
#include "platform/ui/Application.h"
#include "platform/ui/StaticText.h"

namespace varnith {

namespace {

// Qt replaces "[*]" in a title by the mark of a modified document. Doubled, it stands for itself.
QString DecodedTitle(const std::string& title) {
    return Decoded(title).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

// The text that the key types without Control and Meta. With them, Qt gives a control character or nothing.
std::string KeyText(const QKeyEvent& event) {
    const int key = event.key();
    if (key < Qt::Key_A || key > Qt::Key_Z) return Encoded(event.text());
    const bool upper = event.modifiers().testFlag(Qt::ShiftModifier);
    return std::string(1, static_cast<char>(key - Qt::Key_A + (upper ? 'A' : 'a')));
}

}  // namespace

QtWindow::QtWindow(Window& window, QtDesktop& desktop, FrameClock& clock)
    : View(window, clock),
      window_(window),
      desktop_(desktop),
      clock_(clock),
      frame_(new QMainWindow),
      contents_(new QWidget(frame_)),
      focus_ring_(new QFocusFrame(contents_)) {
    BuildFrame();
    BuildControls();
    PlaceOnScreen();
    Update();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
        // The headings of a list have a ring of their own.
        focus_ring_->setWidget(now && now->parentWidget() == contents_ ? now : nullptr);
    });
    frame_->show();
    frame_->windowHandle()->installEventFilter(this);
}

QtWindow::~QtWindow() {
    shield_.reset();
    views_.clear();
    menus_.reset();
    if (frame_->windowHandle()) frame_->windowHandle()->removeEventFilter(this);
    frame_->removeEventFilter(this);
    contents_->removeEventFilter(this);
    frame_->hide();
    frame_->deleteLater();
}

void QtWindow::BuildFrame() {
    const Window::Style& style = window_.GetStyle();
    frame_->setCentralWidget(contents_);
    if (window_.MenuBar())
        menus_ = std::make_unique<MenuBarView>(window_.MenuBar(), *frame_->menuBar());
    else
        MenuBarView::AddShortcuts(*frame_);
    // Without this hint a window that has none of the buttons gets the window manager's default buttons.
    frame_->setWindowFlag(Qt::CustomizeWindowHint);
    frame_->setWindowFlag(Qt::WindowTitleHint);
    frame_->setWindowFlag(Qt::WindowSystemMenuHint);
    frame_->setWindowFlag(Qt::WindowMaximizeButtonHint, style.MaximizeButton);
    frame_->setWindowFlag(Qt::WindowMinimizeButtonHint, style.MinimizeButton);
    frame_->setWindowFlag(Qt::WindowCloseButtonHint, style.CloseButton);
    if (style.Resizeable) {
        contents_->setMinimumSize(style.MinWidth, style.MinHeight);
        contents_->setMaximumSize(style.MaxWidth, style.MaxHeight);
    }
    // Not modal to Qt: that would block the other windows' menus and close buttons too.
    if (window_.IsModal()) frame_->setWindowFlag(Qt::Dialog);
    if (style.WhiteBackground) SetWhiteBackground(*contents_);
    AddDesktopKeys();
    frame_->installEventFilter(this);
    contents_->installEventFilter(this);
}

// The keys for menus that desktops have, but not Qt.
void QtWindow::AddDesktopKeys() {
    const auto add = [this](const QKeySequence& keys, auto&& action) {
        QObject::connect(new QShortcut(keys, frame_), &QShortcut::activated, this, action);
    };
    add(QKeySequence(Qt::SHIFT | Qt::Key_F10), [this] {
        QContextMenuEvent menu_key(QContextMenuEvent::Keyboard, {}, {}, Qt::NoModifier);
        QCoreApplication::sendEvent(frame_->windowHandle(), &menu_key);
    });
    if (!menus_) return;
    add(QKeySequence(Qt::Key_F10), [bar = frame_->menuBar()] {
        QAction* first = bar->actions().constFirst();
        bar->setActiveAction(first);
        first->menu()->setActiveAction(first->menu()->actions().constFirst());
    });
}

void QtWindow::BuildControls() {
    for (Control* control : window_.Controls()) views_.push_back(MakeView(*control, *contents_, clock_));

    for (const Control* control : window_.Controls()) {
        const auto* text = dynamic_cast<const StaticText*>(control);
        if (text && text->Labelled())
            ViewOf(*text->Labelled()).SetLabel(*qobject_cast<QLabel*>(&ViewOf(*text).Widget()));
    }
    SetTabOrder();
}

ControlView& QtWindow::ViewOf(const Control& control) const {
    const auto place = std::ranges::find(window_.Controls(), &control);
    return *views_[static_cast<std::size_t>(place - window_.Controls().begin())];
}

void QtWindow::SetTabOrder() {
    std::vector<Control*> by_tab = window_.Controls();
    std::stable_sort(by_tab.begin(), by_tab.end(),
                     [](const Control* a, const Control* b) { return a->TabIndex() < b->TabIndex(); });
    QWidget* previous = nullptr;
    for (const Control* control : by_tab) {
        const ControlView& view = ViewOf(*control);
        QWidget& widget = view.Widget();
        // setTabOrder ignores a widget that can't have the focus, such as a label, and so would break the
        // chain.
        if (widget.focusPolicy() == Qt::NoFocus) continue;
        if (previous) QWidget::setTabOrder(previous, &widget);
        previous = &view.LastTabStop();
        if (previous != &widget) QWidget::setTabOrder(&widget, previous);
    }
}

// Window's size is without the menu bar, the frame's size is with it.
void QtWindow::PlaceOnScreen() {
    const int bar = menus_ ? frame_->menuBar()->sizeHint().height() : 0;
    const QSize size(window_.Width(), window_.Height() + bar);
    if (window_.GetStyle().Resizeable)
        frame_->resize(size);
    else
        frame_->setFixedSize(size);  // not the contents': only the frame's reaches the window manager
    QWidget* parent = QApplication::activeWindow();
    const QRect first_screen = QGuiApplication::primaryScreen()->geometry();
    if (window_.GetStyle().Placement == Window::PlacementKind::ParentScreen) {
        const QRect screen = parent ? parent->screen()->geometry() : first_screen;
        const QPoint corner = screen.center() - frame_->rect().center() - first_screen.topLeft();
        window_.SetLeft(corner.x());
        window_.SetTop(corner.y());
    }
    frame_->move(first_screen.topLeft() + QPoint(window_.Left(), window_.Top()));
    frame_->winId();  // creates windowHandle()
    if (window_.IsModal() && parent) frame_->windowHandle()->setTransientParent(parent->windowHandle());
}

void QtWindow::BringToFront() {
    frame_->show();
    frame_->raise();
    frame_->activateWindow();
}

void QtWindow::SetBlocked(bool blocked) {
    if (blocked == (shield_ != nullptr)) return;
    shield_ = blocked ? std::make_unique<Shield>(*contents_) : nullptr;
}

void QtWindow::SetPointer(PointerShape shape) {
    switch (shape) {
        case PointerShape::Usual:
            return frame_->unsetCursor();
        case PointerShape::Busy:
            return frame_->setCursor(Qt::BusyCursor);
        case PointerShape::Wait:
            return frame_->setCursor(Qt::WaitCursor);
    }
}

void QtWindow::Update() {
    frame_->setWindowTitle(DecodedTitle(window_.Title()));
    if (refreshes_ == window_.Refreshes()) return;
    refreshes_ = window_.Refreshes();
    frame_->update();
    for (QWidget* widget : frame_->findChildren<QWidget*>()) widget->update();
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == frame_ && event->type() == QEvent::Close) {
        event->ignore();
        // Some window managers let the user close a window that has no close button.
        if (window_.GetStyle().CloseButton) window_.Close();
        return true;
    }
    if (watched == frame_ && event->type() == QEvent::WindowActivate) Activated();
    if (watched == contents_ && event->type() == QEvent::Resize) {
        window_.SetSize(contents_->width(), contents_->height());
        clock_.Flush();
    }
    const bool is_press = event->type() == QEvent::KeyPress;
    if (watched != frame_->windowHandle() || !(is_press || event->type() == QEvent::KeyRelease)) return false;
    auto& key = *static_cast<QKeyEvent*>(event);
    if (KeyGoesToModal()) return PassKeyOn(key);
    return is_press && DeliverKeyPress(key);
}

void QtWindow::Activated() {
    Application::Current().SetFrontWindow(window_);
    if (menus_) menus_->UpdateEnabled();
    // Keeps the modal window above this one: the window manager may not know that they belong together.
    // Doesn't activate it, because this window needs the keyboard for its menus.
    if (const QtWindow* modal = ModalInFront()) modal->frame_->raise();
}

QtWindow* QtWindow::ModalInFront() const {
    const Ref<Window> front = Application::Current().FrontWindow();
    return shield_ && front ? dynamic_cast<QtWindow*>(front->View()) : nullptr;
}

// True while this window is blocked, except for the keys that work its menus.
bool QtWindow::KeyGoesToModal() const {
    const bool in_menu_bar = menus_ && frame_->focusWidget() == frame_->menuBar();
    return shield_ && !in_menu_bar && !QApplication::activePopupWidget();
}

bool QtWindow::PassKeyOn(QKeyEvent& event) {
    QtWindow* modal = ModalInFront();
    if (!modal) return true;
    // A modifier alone types no text: it may be the start of a shortcut of the menus, so it activates
    // nothing.
    if (event.type() == QEvent::KeyPress && !event.text().isEmpty()) modal->BringToFront();
    QCoreApplication::sendEvent(modal->frame_->windowHandle(), &event);
    return true;
}

bool QtWindow::DeliverKeyPress(const QKeyEvent& event) {
    // The key may close the window, which deletes this view.
    const QPointer<QtWindow> self(this);
    {
        const QtDesktop::DeliveredModifiers delivered(desktop_, event.modifiers());
        const std::string key = KeyText(event);
        if (window_.PressKey(key) || !self) return true;
        ControlView* focused = FocusedView();
        const bool taken = focused && focused->PressKey(key);
        if (!self) return true;
        if (taken) {
            // The next key may come before the next frame, and the widget must have the new text by then.
            clock_.Flush();
            return true;
        }
    }
    if (event.key() == Qt::Key_Escape && window_.GetStyle().EscapeCloses) {
        window_.Close();
        return true;
    }
    const bool is_return = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return is_return && PressDefaultButton();
}

ControlView* QtWindow::FocusedView() const {
    const QWidget* focus = frame_->focusWidget();
    const auto place = std::find_if(views_.begin(), views_.end(),
                                    [&](const auto& view) { return &view->Widget() == focus; });
    return place == views_.end() ? nullptr : place->get();
}

// Return presses the default button, unless the focus is in a field of several lines or on another button.
bool QtWindow::PressDefaultButton() {
    const QWidget* focus = frame_->focusWidget();
    if (qobject_cast<const QPlainTextEdit*>(focus) || qobject_cast<const QPushButton*>(focus)) return false;
    for (QPushButton* button : contents_->findChildren<QPushButton*>()) {
        if (!button->isDefault()) continue;
        button->click();
        return true;
    }
    return false;
}

}  // namespace varnith
