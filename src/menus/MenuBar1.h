#pragma once

#include "platform/base/Ref.h"
#include "platform/ui/Menu.h"

namespace varnith {

// The application's only menu bar: two menus with six entries. It never changes. MainWindow handles its
// entries.
class MenuBar1 : public MenuBar {
  public:
    MenuBar1();

    // The only instance. Created by the first call and kept for the whole run.
    static Ref<MenuBar1> Instance();

  private:
    // The File menu.
    virtual void Untitled0();
    // The Help menu.
    virtual void Untitled1();

    void AppendMenu(const char* name, const char* text);
    template <class T>
    void AppendEntry(const char* menu, const char* name, const char* text, const char* shortcut = "");
};

}  // namespace varnith
