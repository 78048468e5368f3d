#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "app/MainWindow.h"
#include "app/Start.h"
#include "platform/base/InForce.h"
#include "platform/ui/Desktop.h"

// The program without a display: its main window is there, and a work is done with it in place of the event
// loop. A dialog that asks for a file is answered with a file beside the program.
class BenchDesktop : public varnith::Desktop {
  public:
    explicit BenchDesktop(std::function<void(varnith::MainWindow&)> work) : work_(std::move(work)) {}

    std::optional<std::string> ChooseFileToWrite(const std::string&, const std::string&) override {
        return ExportPath();
    }
    int RunEventLoop() override {
        work_(*varnith::MainWindow::Instance());
        std::remove(ExportPath().c_str());
        std::remove(DatabasePath().c_str());
        return 0;
    }

    static std::string ExportPath() { return varnith::GetFolderItem("export")->AbsolutePath(); }
    static std::string DatabasePath() { return varnith::GetFolderItem("varnth")->AbsolutePath(); }

  private:
    std::function<void(varnith::MainWindow&)> work_;
};

inline int WithMainWindow(std::function<void(varnith::MainWindow&)> work) {
    BenchDesktop desktop(std::move(work));
    const varnith::InForce<varnith::Desktop> in_force(desktop);
    return varnith::_Main();
}

// Rows as a scan appends them, 500 of a folder after each other.
inline void Fill(varnith::Listbox& list, std::int32_t rows) {
    for (std::int32_t row = 0; row < rows; ++row) {
        list.AddRow("");
        list.SetCellType(row, 0, varnith::Listbox::TypeCheckBox);
        list.SetCell(row, 1, "invoice " + std::to_string(row) + ".tif");
        list.SetCell(row, 2, std::to_string(row % 40));
        list.SetCell(row, 3, "/home/someone/Documents/archive/box " + std::to_string(row / 500));
        list.SetCell(row, 4, "tif");
    }
}
