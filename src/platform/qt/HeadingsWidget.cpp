#include "platform/qt/HeadingsWidget.h"

#include <QAbstractScrollArea>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>
#include <algorithm>

namespace varnith {

namespace {

constexpr int WidthStep = 10;
constexpr int RingWidth = 2;

}  // namespace

HeadingsWidget::HeadingsWidget(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::TabFocus);
    setSectionsClickable(true);
    setHighlightSections(false);
}

// QHeaderView's own handlers are passed over: they would make a row of the table the current one.
void HeadingsWidget::focusInEvent(QFocusEvent* /*event*/) {
    ShowChosen();
}

void HeadingsWidget::focusOutEvent(QFocusEvent* /*event*/) {
    viewport()->update();
}

void HeadingsWidget::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool arrow = key == Qt::Key_Left || key == Qt::Key_Right;
    const bool click = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    const int step = key == Qt::Key_Left ? -1 : 1;
    if (arrow && event->modifiers().testFlag(Qt::AltModifier))
        resizeSection(chosen_, std::max(minimumSectionSize(), sectionSize(chosen_) + step * WidthStep));
    else if (arrow)
        Choose(chosen_ + step);
    else if (click && !event->isAutoRepeat())
        emit sectionClicked(chosen_);
    else
        event->ignore();
}

void HeadingsWidget::Choose(int column) {
    chosen_ = std::clamp(column, 0, std::max(count() - 1, 0));
    ShowChosen();
}

void HeadingsWidget::ShowChosen() {
    QScrollBar* bar = static_cast<QAbstractScrollArea*>(parentWidget())->horizontalScrollBar();
    const int left = sectionPosition(chosen_);
    const int right = left + sectionSize(chosen_);
    bar->setValue(std::min(std::max(bar->value(), right - viewport()->width()), left));
    viewport()->update();
    on_choice(chosen_);
}

void HeadingsWidget::paintSection(QPainter* painter, const QRect& place, int column) const {
    QHeaderView::paintSection(painter, place, column);
    if (column != Chosen()) return;
    QStyleOption ring;
    ring.initFrom(this);
    ring.rect = place;
    const QRect inside = place.adjusted(RingWidth, RingWidth, -RingWidth, -RingWidth);
    painter->save();
    painter->setClipRegion(QRegion(place) - inside);
    style()->drawControl(QStyle::CE_FocusFrame, &ring, painter, this);
    painter->restore();
}

}  // namespace varnith
