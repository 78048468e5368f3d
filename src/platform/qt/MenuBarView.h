#pragma once

#include <QAction>
#include <QMenuBar>
#include <QWidget>
#include <utility>
#include <vector>

#include "platform/base/Ref.h"
#include "platform/ui/Menu.h"

namespace varnith {

// Fills a QMenuBar from the program's menu tree, and enables its entries as the application decides.
class MenuBarView {
  public:
    // REQUIRES: the bar outlives the view.
    MenuBarView(const Ref<MenuBar>& menus, QMenuBar& bar);

    // Makes the shortcuts of the application's menu bar work in a window without a menu bar, or in a dialog.
    static void AddShortcuts(QWidget& window);

    // Enables and disables the entries according to the frontmost window.
    void UpdateEnabled();

  private:
    void Fill(const Ref<MenuItem>& items, QMenu& menu);

    std::vector<std::pair<Ref<MenuItem>, QAction*>> entries_;
    QObject connections_;
};

}  // namespace varnith
