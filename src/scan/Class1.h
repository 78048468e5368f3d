#pragma once

#include <cstdint>

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Window.h"

namespace varnith {

// The thread of the recursive scan: walks a folder, then fills the type index, the results database and the
// window's title and file count. It sits on the main window as one of its controls.
class Class1 : public Thread {
  public:
    // The folder to walk; nil until the first recursive scan, and kept until the next one.
    Ref<FolderItem> f;

    // What every control of a window has. Nothing of the scan asks for it.
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
