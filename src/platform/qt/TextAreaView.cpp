#include "platform/qt/TextAreaView.h"

#include <QSignalBlocker>
#include <algorithm>

#include "platform/qt/Decode.h"

namespace varnith {

namespace {

// The text in Qt's form: lines are separated by U+2029 (paragraph separator). Unlike toPlainText this keeps
// every character, for example no-break spaces.
QString Edited(const QPlainTextEdit& edit) {
    return edit.document()->toRawText();
}

QString ToEdited(const std::string& text) {
    return QString::fromStdString(text).replace(u'\r', QChar::ParagraphSeparator);
}

std::string FromEdited(QString text) {
    text.replace(QChar::ParagraphSeparator, u'\r').replace(QChar::LineSeparator, u'\r');
    return Encoded(text);
}

// The number of characters. One outside the Basic Multilingual Plane takes two places (UTF-16 units) in a
// QString.
std::int32_t Characters(QStringView text) {
    return static_cast<std::int32_t>(
        std::count_if(text.begin(), text.end(), [](QChar c) { return !c.isLowSurrogate(); }));
}

// The place at which a character starts, given its index.
int PlaceOf(std::int32_t character, QStringView text) {
    int place = 0;
    for (; character > 0 && place < text.size(); --character) place += text[place].isHighSurrogate() ? 2 : 1;
    return place;
}

}  // namespace

TextAreaView::TextAreaView(EditField& field, QPlainTextEdit& edit, FrameClock& clock)
    : ControlView(field, edit, clock), field_(field), edit_(edit) {
    edit.setTabChangesFocus(true);
    edit.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    Update();
    QObject::connect(&edit, &QPlainTextEdit::textChanged, Connections(), [this] { TellText(); });
    QObject::connect(&edit, &QPlainTextEdit::cursorPositionChanged, Connections(),
                     [this] { TellSelection(); });
    QObject::connect(&edit, &QPlainTextEdit::selectionChanged, Connections(), [this] { TellSelection(); });
}

void TextAreaView::TellText() {
    field_.SetText(FromEdited(Edited(edit_)));
}

void TextAreaView::TellSelection() {
    const QTextCursor cursor = edit_.textCursor();
    const QString text = Edited(edit_);
    const QStringView selected =
        QStringView(text).mid(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
    field_.Select(Characters(QStringView(text).left(cursor.selectionStart())), Characters(selected));
}

void TextAreaView::Update() {
    ControlView::Update();
    edit_.setReadOnly(field_.ReadOnly());
    const QString shown = Edited(edit_);
    const QString text = ToEdited(field_.Text());
    if (shown != text) Replace(shown, text);
    FollowSelection(text);
}

// Replaces only the part that differs, as one undo step.
void TextAreaView::Replace(const QString& shown, const QString& text) {
    const QSignalBlocker by_program(edit_);
    const auto first = std::mismatch(shown.begin(), shown.end(), text.begin(), text.end());
    const auto last = std::mismatch(shown.rbegin(), std::make_reverse_iterator(first.first), text.rbegin(),
                                    std::make_reverse_iterator(first.second));
    QTextCursor cursor(edit_.document());
    cursor.setPosition(static_cast<int>(first.first - shown.begin()));
    cursor.setPosition(static_cast<int>(last.first.base() - shown.begin()), QTextCursor::KeepAnchor);
    cursor.insertText(text.mid(first.second - text.begin(), last.second.base() - first.second));
}

void TextAreaView::FollowSelection(const QString& text) {
    const int start = PlaceOf(field_.SelStart(), text);
    const int end = PlaceOf(field_.SelStart() + field_.SelLength(), text);
    QTextCursor cursor = edit_.textCursor();
    if (cursor.selectionStart() == start && cursor.selectionEnd() == end) return;
    const QSignalBlocker by_program(edit_);
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    edit_.setTextCursor(cursor);
    edit_.ensureCursorVisible();
}

}  // namespace varnith
