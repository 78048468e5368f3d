#pragma once

#include <cstdint>
#include <string>

#include "http/HTTPSocket.h"
#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/ui/ProgressBar.h"
#include "platform/ui/PushButton.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Window.h"

namespace varnith {

// The offer of a newer version. Its one button downloads and installs it; pressed again, it starts anew. A
// download that breaks off is not installed: the bar stops without a word. The window can't be closed: once
// it is open, the way on is the update, or to quit the program.
class AutoUpdateWindow : public SingleWindow<AutoUpdateWindow> {
  public:
    AutoUpdateWindow();

    std::string downloadURL;

    StaticText MessageDisplay;
    StaticText DetailDisplay;
    ProgressBar ProgressBar1;
    PushButton ActionBtn;
    Ref<HTTPSocket> Downloader;

    // Makes the offer, with the address of the download. It names the file by what stands behind its last
    // "/".
    void Init(const std::string& url);

    void ActionBtn_Action();
    void Downloader_ReceiveProgress(std::int32_t received, std::int32_t total, const std::string& data);
    void Downloader_DownloadComplete(const std::string& url, std::int32_t status,
                                     const Ref<InternetHeaders>& headers, const Ref<FolderItem>& file);

  private:
    void Layout();
    void CreateControls();
    void CreateDownloader();
    static void ReportFailure();

    // Whether the download has come as far as the server has announced, if it has announced anything.
    bool is_whole_ = false;
};

}  // namespace varnith
