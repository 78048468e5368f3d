#include "platform/qt/MessageBox.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStyle>

namespace varnith {

namespace {

// QMessageBox grows with its text. One of more characters or lines could be larger than the screen.
constexpr qsizetype MostWithoutScrolling = 1000;
constexpr int MostLinesWithoutScrolling = 20;
// QPlainTextEdit breaks lines between words in a time that is quadratic in their number: too long for a
// longer text.
constexpr qsizetype MostBrokenBetweenWords = 20'000;
// Without it, the box of a short text would be too narrow for its title.
constexpr int LeastTextWidth = 240;

bool Scrolls(const QString& text) {
    if (text.size() > MostWithoutScrolling) return true;
    const QFontMetrics metrics(QApplication::font());
    return metrics.size(0, text).height() > MostLinesWithoutScrolling * metrics.lineSpacing();
}

void Run(QDialog& box) {
    box.setWindowTitle(QApplication::applicationName());
    box.exec();
}

void ShowScrolling(const QString& text) {
    QDialog box(QApplication::activeWindow());
    const int icon_size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    auto* icon = new QLabel;
    icon->setPixmap(box.style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(icon_size));
    auto* shown = new QPlainTextEdit;
    if (text.size() > MostBrokenBetweenWords) shown->setWordWrapMode(QTextOption::WrapAnywhere);
    shown->setReadOnly(true);
    shown->setTabChangesFocus(true);
    shown->setPlainText(text);
    shown->setAccessibleName(QStringLiteral("Message"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    auto* grid = new QGridLayout(&box);
    grid->addWidget(icon, 0, 0, Qt::AlignTop);
    grid->addWidget(shown, 0, 1);
    grid->addWidget(buttons, 1, 0, 1, 2);
    box.resize(540, 320);
    Run(box);
}

}  // namespace

void ShowMessageBox(const std::string& text) {
    const QString message = QString::fromStdString(text);
    if (Scrolls(message)) return ShowScrolling(message);
    QMessageBox box(QMessageBox::Information, {}, message, QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setDefaultButton(QMessageBox::Ok);
    for (auto* label : box.findChildren<QLabel*>())
        if (label->text() == message) label->setMinimumWidth(LeastTextWidth);
    Run(box);
}

}  // namespace varnith
