#pragma once

#include <QHeaderView>
#include <functional>

namespace varnith {

// The headings of a table. Tab reaches them. The left and right arrow keys then choose a heading, and a ring
// shows which. The space bar or Return clicks it. With Alt, the arrow keys make its column narrower or wider.
// The table gets all other keys.
class HeadingsWidget : public QHeaderView {
  public:
    explicit HeadingsWidget(QWidget* parent);

    // Called when the user has chosen a heading, or comes back to it. Must be set before the widget is shown.
    std::function<void(int column)> on_choice;

    // The column of the heading that the keys act on; -1 while they act on none.
    int Chosen() const { return hasFocus() ? chosen_ : -1; }

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintSection(QPainter* painter, const QRect& place, int column) const override;

  private:
    void Choose(int column);
    // Scrolls until the chosen heading can be seen, and redraws the headings.
    void ShowChosen();

    int chosen_ = 0;
};

}  // namespace varnith
