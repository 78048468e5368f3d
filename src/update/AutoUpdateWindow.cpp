#include "update/AutoUpdateWindow.h"

#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"
#include "platform/files/SpecialFolders.h"
#include "platform/ui/Dialogs.h"
#include "update/UpdateUtilities.h"

namespace varnith {

AutoUpdateWindow::AutoUpdateWindow() {
    Layout();
    CreateControls();
    CreateDownloader();
}

void AutoUpdateWindow::Layout() {
    SetTitle("Software Update");
    SetDesignSize(408, 172);
    SetStyle({.Frame = FrameKind::MovableModal,
              .Placement = PlacementKind::ParentScreen,
              .Resizeable = false,
              .CloseButton = false,
              .MaximizeButton = false,
              .MinimizeButton = false});
}

void AutoUpdateWindow::CreateControls() {
    AddControl(MessageDisplay, {8, 8, 392, 20}, {}, 0);
    MessageDisplay.SetText("Update Available!");
    MessageDisplay.SetTextSize(SystemTextSize);
    MessageDisplay.SetBold(true);

    AddControl(DetailDisplay, {8, 34, 392, 61}, {}, 1);
    DetailDisplay.SetText("<details>");
    DetailDisplay.SetTextSize(SystemTextSize);
    DetailDisplay.SetMultiLine(true);

    AddControl(ProgressBar1, {9, 107, 391, 20}, {}, 2);
    ProgressBar1.SetAccessibleName("Download");
    ProgressBar1.SetMaximum(100);
    ProgressBar1.SetValue(0);

    AddControl(ActionBtn, {171, 138, 80, 20}, {}, 3);
    ActionBtn.SetCaption("Update");
    ActionBtn.SetDefault(true);
    ActionBtn.Action = [this] { ActionBtn_Action(); };
}

void AutoUpdateWindow::CreateDownloader() {
    Downloader = MakeRef<HTTPSocket>();
    Downloader->ReceiveProgress = [this](std::int32_t received, std::int32_t total, const std::string& data) {
        Downloader_ReceiveProgress(received, total, data);
    };
    Downloader->DownloadComplete = [this](const std::string& url, std::int32_t status,
                                          const Ref<InternetHeaders>& headers, const Ref<FolderItem>& file) {
        Downloader_DownloadComplete(url, status, headers, file);
    };
}

void AutoUpdateWindow::Init(const std::string& url) {
    downloadURL = url;
    // The missing name and the two blanks look like slips. Users and support know the sentence, so leave it.
    DetailDisplay.SetText(
        "There is a newer version of available for download.  Press the Update button to begin.");
    ActionBtn.SetCaption("Update");
}

void AutoUpdateWindow::ActionBtn_Action() {
    const std::string name = NthField(downloadURL, "/", CountFields(downloadURL, "/"));
    const auto folder = TemporaryFolder();
    const auto file = folder ? folder->Child(name) : nullptr;
    if (file) {
        is_whole_ = false;
        received_ = 0;
        Downloader->Get(downloadURL, file);
        return;
    }
    TraceFailure("download the update", downloadURL,
                 folder ? "the address names no file" : "there is no safe temporary folder");
    if (!downloadURL.empty()) ReportFailure();
}

void AutoUpdateWindow::Downloader_ReceiveProgress(std::int32_t received, std::int32_t total,
                                                  const std::string& /*data*/) {
    received_ = received;
    is_whole_ = received >= total;
    // The bar stays empty if the server announces no length.
    ProgressBar1.SetValue(total == 0 ? 0 : WholeNumber(static_cast<double>(received) / total * 100));
}

void AutoUpdateWindow::Downloader_DownloadComplete(const std::string& /*url*/, std::int32_t /*status*/,
                                                   const Ref<InternetHeaders>& /*headers*/,
                                                   const Ref<FolderItem>& file) {
    // HTTPSocket reports a download that broke off as complete. Part of an archive must not be installed.
    if (!is_whole_) {
        TraceFailure("download the update", downloadURL, "the connection ended too early");
        return;
    }
    if (!IsOnDisk(*file)) return ReportFailure();
    // The status is ignored: what matters is whether the file contains something to install.
    if (!UpdateUtilities::SwapFiles(file)) ReportFailure();
}

// The stream passes over its errors, such as a full disk.
bool AutoUpdateWindow::IsOnDisk(const FolderItem& file) const {
    const auto status = FileSystem::Current().Status(file.AbsolutePath());
    const bool is_on_disk = status && status->size >= received_;
    if (!is_on_disk) TraceFailure("download the update", downloadURL, "not all of it is on disk");
    return is_on_disk;
}

void AutoUpdateWindow::ReportFailure() {
    Beep();
    MsgBox("Error installing updated application.");
}

}  // namespace varnith
