#pragma once

#include <QAction>
#include <QMenuBar>
#include <QWidget>
#include <utility>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/ui/Menu.h"

namespace varnith {

// Fills a menu bar from the program's tree of menus and keeps its entries enabled as the application has it.
class MenuBarView {
  public:
    // REQUIRES: the bar outlives the view.
    MenuBarView(const Ref<MenuBar>& menus, QMenuBar& bar);

    // Lets a window without a bar of its own, or a dialog, answer the shortcuts of the application's.
    static void AddShortcuts(QWidget& window);

    // Greys and ungreys the entries by what is in front now.
    void UpdateEnabled();

  private:
    void Fill(const Ref<MenuItem>& items, QMenu& menu);

    std::vector<std::pair<Ref<MenuItem>, QAction*>> entries_;
    QObject connections_;
};

}  // namespace varnith
