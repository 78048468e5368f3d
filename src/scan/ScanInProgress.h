#pragma once

#include "app/MainWindow.h"

namespace varnith {

// Lives while a scan runs, and shows that in the window. A scan that is killed destroys it as well.
class ScanInProgress {
  public:
    ScanInProgress(const Ref<MainWindow>& window, PointerShape pointer) : window_(window) {
        window_->SetPointer(pointer);
        window_->Listbox1.SetEmptyText("");
    }
    ScanInProgress(const ScanInProgress&) = delete;
    ScanInProgress& operator=(const ScanInProgress&) = delete;
    ~ScanInProgress() {
        window_->Listbox1.SetEmptyText(MainWindow::EmptyListText);
        window_->SetPointer(PointerShape::Usual);
    }

  private:
    Ref<MainWindow> window_;
};

}  // namespace varnith
