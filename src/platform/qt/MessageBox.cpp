#include "platform/qt/MessageBox.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "platform/qt/Decode.h"
#include "platform/qt/MenuBarView.h"

namespace varnith {

namespace {

// A longer one would make a box that no screen could hold.
constexpr qsizetype MostWithoutScrolling = 1000;
// Between words a longer one is broken into lines in a time that grows with the square of its words.
constexpr qsizetype MostBrokenBetweenWords = 20'000;

void ShowScrolling(const QString& text) {
    QDialog box(QApplication::activeWindow());
    box.setWindowTitle(QApplication::applicationName());
    auto* shown = new QPlainTextEdit;
    if (text.size() > MostBrokenBetweenWords) shown->setWordWrapMode(QTextOption::WrapAnywhere);
    shown->setReadOnly(true);
    shown->setTabChangesFocus(true);
    shown->setPlainText(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    auto* column = new QVBoxLayout(&box);
    column->addWidget(shown);
    column->addWidget(buttons);
    box.resize(480, 320);
    MenuBarView::AddShortcuts(box);
    box.exec();
}

}  // namespace

void ShowMessageBox(const std::string& text) {
    const QString decoded = QString::fromStdString(text);
    if (decoded.size() > MostWithoutScrolling) return ShowScrolling(decoded);
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(QApplication::applicationName());
    box.setTextFormat(Qt::PlainText);
    box.setText(decoded);
    MenuBarView::AddShortcuts(box);
    box.exec();
}

}  // namespace varnith
