#pragma once

#include <cstdint>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Window.h"

namespace varnith {

// The thread of the recursive scan. It walks a folder and fills the main window's list, then rebuilds the
// type index, saves the rows in the results database and shows the end of the scan in the title and the file
// count.
class Class1 : public Thread {
  public:
    // The folder to scan. Nil until the first recursive scan; then that of the last one.
    Ref<FolderItem> f;

    // The thread is a member of the window, as controls are, and has these properties in common with them.
    // Nothing in the program uses them.
    std::int32_t _Index() const { return Index; }
    void _SetIndex(std::int32_t index) { Index = index; }
    Ref<varnith::Window> Window() const { return ownerWindow; }
    void _SetWindow(const Ref<varnith::Window>& window) { ownerWindow = window; }

  protected:
    void Event_Run() override;

  private:
    std::int32_t Index = 0;
    Ref<varnith::Window> ownerWindow;
};

}  // namespace varnith
