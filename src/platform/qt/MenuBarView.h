#pragma once

#include <QAction>
#include <QMenuBar>
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

    // Greys and ungreys the entries by what is in front now.
    void UpdateEnabled();

  private:
    void Fill(const Ref<MenuItem>& items, QMenu& menu);

    std::vector<std::pair<Ref<MenuItem>, QAction*>> entries_;
    QObject connections_;
};

}  // namespace varnith
