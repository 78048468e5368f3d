#include "platform/qt/ControlViews.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>
#include <utility>

#include "platform/qt/CanvasView.h"
#include "platform/qt/Decode.h"
#include "platform/qt/LabelWidget.h"
#include "platform/qt/ListboxView.h"
#include "platform/qt/PopupMenuView.h"
#include "platform/qt/ProgressBarView.h"
#include "platform/qt/TextAreaView.h"
#include "platform/qt/TextColours.h"
#include "platform/ui/CheckBox.h"
#include "platform/ui/EditField.h"
#include "platform/ui/Listbox.h"
#include "platform/ui/PushButton.h"
#include "platform/ui/StaticText.h"

namespace varnith {

namespace {

constexpr int LeastTextSize = 8;
constexpr int FrameWidth = 1;  // the frame that Qt's styles draw around a text

class StaticTextView : public ControlView {
  public:
    StaticTextView(StaticText& text, LabelWidget& label, FrameClock& clock)
        : ControlView(text, label, clock), text_(text), label_(label) {
        if (text.MouseDown)
            label.SetOnPress([&text](const QPoint& place) { text.PressMouse(place.x(), place.y()); });
        Update();
    }

    void Update() override {
        ControlView::Update();
        label_.setWordWrap(text_.MultiLine());
        label_.setAlignment(ToQt(text_.TextAlign()) | (text_.MultiLine() ? Qt::AlignTop : Qt::AlignVCenter));
        SetTextColour(label_, QColor::fromRgb(text_.TextColor()));
        label_.setText(Decoded(text_.Text()));
    }

    QSize TextRoom(const QFontMetrics& metrics) const override {
        const int width = text_.MultiLine() ? 0 : metrics.horizontalAdvance(Decoded(text_.Text()));
        return {width, metrics.height()};
    }

  private:
    StaticText& text_;
    LabelWidget& label_;
};

class EditFieldView : public ControlView {
  public:
    EditFieldView(EditField& field, QLineEdit& edit, FrameClock& clock)
        : ControlView(field, edit, clock), field_(field), edit_(edit) {
        if (field.BlackOnWhite()) SetBlackOnWhite(edit);
        edit.setMaxLength(std::numeric_limits<int>::max());
        // Not textEdited: a screen reader or a dictation program sets the text without typing.
        QObject::connect(&edit, &QLineEdit::textChanged, Connections(),
                         [&field](const QString& text) { field.SetText(Encoded(text)); });
        Update();
    }

    void Update() override {
        ControlView::Update();
        edit_.setReadOnly(field_.ReadOnly());
        // The widget keeps pasted text as it is, control characters included, while Decoded() replaces them.
        // So the texts are compared in both forms before the widget's text is replaced.
        const QString text = Decoded(field_.Text());
        if (edit_.text() == text || Encoded(edit_.text()) == field_.Text()) return;
        const QSignalBlocker by_program(edit_);
        edit_.setText(text);
        edit_.setCursorPosition(0);
    }

  private:
    EditField& field_;
    QLineEdit& edit_;
};

class CheckBoxView : public ControlView {
  public:
    CheckBoxView(CheckBox& box, QCheckBox& button, FrameClock& clock)
        : ControlView(box, button, clock), box_(box), button_(button) {
        // Not clicked: a screen reader toggles the box without a click.
        QObject::connect(&button, &QCheckBox::toggled, Connections(),
                         [&box](bool value) { box.SetValue(value); });
        Update();
    }

    void Update() override {
        ControlView::Update();
        button_.setText(DecodedCaption(box_.Caption()));
        button_.setChecked(box_.Value());
    }

  private:
    CheckBox& box_;
    QCheckBox& button_;
};

class PushButtonView : public ControlView {
  public:
    PushButtonView(PushButton& button, QPushButton& widget, FrameClock& clock)
        : ControlView(button, widget, clock), button_(button), widget_(widget) {
        QObject::connect(&widget, &QPushButton::clicked, Connections(), [&button] { button.Press(); });
        Update();
    }

    void Update() override {
        ControlView::Update();
        widget_.setText(DecodedCaption(button_.Caption()));
        widget_.setDefault(button_.Default());
    }

    QSize TextRoom(const QFontMetrics& metrics) const override {
        const int width = metrics.horizontalAdvance(Decoded(button_.Caption()));
        return ControlView::TextRoom(metrics).grownBy({0, 0, width, 0});
    }

  private:
    PushButton& button_;
    QPushButton& widget_;
};

// Creates the view; nil if the control is null, as after a dynamic_cast to a class that it is not of.
template <class ViewClass, class WidgetClass, class ControlClass>
std::unique_ptr<ControlView> MakeIf(ControlClass* control, QWidget& parent, FrameClock& clock) {
    if (!control) return nullptr;
    return std::make_unique<ViewClass>(*control, *new WidgetClass(&parent), clock);
}

}  // namespace

ControlView::ControlView(Control& control, QWidget& widget, FrameClock& clock)
    : View(control, clock), control_(control), widget_(widget) {
    // Setting a name makes Qt choose the widget's accessible interface, and a label may become a link later.
    if (!control.AccessibleName().empty()) widget.setAccessibleName(Decoded(control.AccessibleName()));
}

void ControlView::Update() {
    const Bounds& bounds = control_.CurrentBounds();
    widget_.setGeometry(bounds.Left, bounds.Top, bounds.Width, bounds.Height);
    widget_.setEnabled(control_.Enabled());
    QFont font = QGuiApplication::font();
    if (control_.TextSize() > 0) font.setPixelSize(control_.TextSize());
    font.setBold(control_.Bold());
    font.setUnderline(control_.Underline());
    if (control_.TextSize() == 0) font = Fitted(font);
    if (widget_.font() != font) widget_.setFont(font);
}

// The desktop's font may be of any size, but a control has the place that it was designed for.
QFont ControlView::Fitted(QFont font) const {
    for (int size = QFontInfo(font).pixelSize(); size > LeastTextSize; font.setPixelSize(--size)) {
        const QSize room = TextRoom(QFontMetrics(font));
        if (room.boundedTo(widget_.size()) == room) break;
    }
    return font;
}

QSize ControlView::TextRoom(const QFontMetrics& metrics) const {
    return QSize(FrameWidth, FrameWidth) * 2 + QSize(0, metrics.height());
}

Qt::Alignment ToQt(TextAlign align) {
    switch (align) {
        case TextAlign::Right:
            return Qt::AlignRight;
        case TextAlign::Centre:
            return Qt::AlignHCenter;
        case TextAlign::Left:
            break;
    }
    return Qt::AlignLeft;
}

std::unique_ptr<ControlView> MakeView(Control& control, QWidget& parent, FrameClock& clock) {
    if (auto view = MakeIf<StaticTextView, LabelWidget>(dynamic_cast<StaticText*>(&control), parent, clock))
        return view;
    auto* field = dynamic_cast<EditField*>(&control);
    if (auto view = MakeIf<TextAreaView, QPlainTextEdit>(field && field->MultiLine() ? field : nullptr,
                                                         parent, clock))
        return view;
    if (auto view = MakeIf<EditFieldView, QLineEdit>(field, parent, clock)) return view;
    if (auto view = MakeIf<CanvasView, CanvasWidget>(dynamic_cast<Canvas*>(&control), parent, clock))
        return view;
    if (auto view = MakeIf<CheckBoxView, QCheckBox>(dynamic_cast<CheckBox*>(&control), parent, clock))
        return view;
    if (auto view = MakeIf<PushButtonView, QPushButton>(dynamic_cast<PushButton*>(&control), parent, clock))
        return view;
    if (auto view = MakeIf<PopupMenuView, PopupMenuWidget>(dynamic_cast<PopupMenu*>(&control), parent, clock))
        return view;
    if (auto view =
            MakeIf<ProgressBarView, QProgressBar>(dynamic_cast<ProgressBar*>(&control), parent, clock))
        return view;
    return MakeIf<ListboxView, ListboxWidget>(dynamic_cast<Listbox*>(&control), parent, clock);
}

}  // namespace varnith
