#include "platform/qt/MessageBox.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "platform/qt/MenuBarView.h"

namespace varnith {

namespace {

// QMessageBox grows with its text. A longer one could be larger than the screen.
constexpr qsizetype MostWithoutScrolling = 1000;
// QPlainTextEdit breaks lines between words in a time that is quadratic in their number: too long for a
// longer text.
constexpr qsizetype MostBrokenBetweenWords = 20'000;

void Run(QDialog& box) {
    box.setWindowTitle(QApplication::applicationName());
    MenuBarView::AddShortcuts(box);
    box.exec();
}

void ShowScrolling(const QString& text) {
    QDialog box(QApplication::activeWindow());
    auto* shown = new QPlainTextEdit;
    if (text.size() > MostBrokenBetweenWords) shown->setWordWrapMode(QTextOption::WrapAnywhere);
    shown->setReadOnly(true);
    shown->setTabChangesFocus(true);
    shown->setPlainText(text);
    shown->setAccessibleName(QStringLiteral("Message"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    auto* column = new QVBoxLayout(&box);
    column->addWidget(shown);
    column->addWidget(buttons);
    box.resize(480, 320);
    Run(box);
}

}  // namespace

void ShowMessageBox(const std::string& text) {
    const QString message = QString::fromStdString(text);
    if (message.size() > MostWithoutScrolling) return ShowScrolling(message);
    QMessageBox box(QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setText(message);
    Run(box);
}

}  // namespace varnith
