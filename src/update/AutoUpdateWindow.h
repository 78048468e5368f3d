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

// The window that offers a newer version. Its one button downloads and installs the version; pressed during a
// download, it starts the download again. A download that breaks off is not installed, and the progress bar
// just stops; one that the disk has no room for isn't installed either, and a message says so. The user can't
// close the window, only update or quit the program.
class AutoUpdateWindow : public SingleWindow<AutoUpdateWindow> {
  public:
    AutoUpdateWindow();

    std::string downloadURL;

    StaticText MessageDisplay;
    StaticText DetailDisplay;
    ProgressBar ProgressBar1;
    PushButton ActionBtn;
    Ref<HTTPSocket> Downloader;

    // Shows the offer. The URL is that of the download; what follows its last "/" is the name of the file.
    void Init(const std::string& url);

    void ActionBtn_Action();
    void Downloader_ReceiveProgress(std::int32_t received, std::int32_t total, const std::string& data);
    void Downloader_DownloadComplete(const std::string& url, std::int32_t status,
                                     const Ref<InternetHeaders>& headers, const Ref<FolderItem>& file);

  private:
    void Layout();
    void CreateControls();
    void CreateDownloader();
    // Whether the file holds all that has arrived.
    bool IsOnDisk(const FolderItem& file) const;
    static void ReportFailure();

    // Whether as many bytes have arrived as the server announced. True from the first piece on if it
    // announced no length.
    bool is_whole_ = false;
    std::int32_t received_ = 0;  // in bytes
};

}  // namespace varnith
