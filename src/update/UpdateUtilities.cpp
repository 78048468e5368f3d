#include "update/UpdateUtilities.h"

#include "platform/base/Text.h"
#include "platform/files/SpecialFolders.h"
#include "platform/system/ApplicationLaunch.h"
#include "platform/system/Shell.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

namespace varnith {

namespace {

// Ten launches, without a pause or a look at what came of them: those that find the new application running
// bring it to the front, so that it is what the user sees when the old one goes.
void LaunchTenTimes(const Ref<FolderItem>& application) {
    for (int i = 0; i < 10; ++i) {
        LaunchApplication(application, true);
        Yield();
    }
}

}  // namespace

Ref<FolderItem> UpdateUtilities::GetExecutableFile() {
    const auto application = ApplicationItem();
    return application->Exists() ? application : ExecutableItem();
}

bool UpdateUtilities::SwapFiles(Ref<FolderItem> download) {
    if (!download || !download->Exists()) return false;
    const auto application = GetExecutableFile();
    const std::string name = application->Name();
    const auto temporary_folder = TemporaryFolder();
    // Nothing is to be unpacked where the application lies, unless that is the temporary folder itself. Some
    // disks spell a path in more than one way.
    if (SameText(download->Parent()->ShellPath(), application->Parent()->ShellPath())) {
        const auto elsewhere = temporary_folder->Child(download->Name());
        download->MoveFileTo(elsewhere);
        download = elsewhere;
    }
    const auto extracted = ExtractArchive(download);
    if (!extracted) return false;

    // From here on nothing is tested and nothing rolled back: each step is tried, and the program quits.
    const auto new_application = GetFolderItem("")->Child("n-" + name);
    extracted->MoveFileTo(new_application);
    application->MoveFileTo(temporary_folder->Child("o-" + name));
    new_application->SetName(name);
    LaunchTenTimes(new_application);
    Quit(0);
    return true;
}

Ref<FolderItem> UpdateUtilities::ExtractArchive(const Ref<FolderItem>& download) {
    const std::string& name = download->Name();
    if (InStr(name, ".tar") == 0) {
        // The application itself. It has to run, and the server has sent its bytes and not its mode.
        download->SetPermissions(0755);
        return download;
    }
    const auto folder = download->Parent();
    Shell shell;
    shell.Execute((InStr(name, ".gz") > 0 ? "tar -xzvf " : "tar -xvf ") + download->ShellPath() + " -C " +
                  folder->ShellPath());
    // Whether tar was content does not count: what it has listed first is there, or it isn't.
    const auto extracted = folder->Child(NthField(shell.Result(), "/", 1));
    if (!extracted || !extracted->Exists()) return nullptr;
    DeleteFileOrFolder(download);
    return extracted;
}

void UpdateUtilities::DeleteFileOrFolder(const Ref<FolderItem>& item) {
    if (!item || !item->Exists()) return;
    if (item->Directory()) {
        // An entry that can't be deleted stays the first, so the passes have to have a limit.
        const std::int32_t limit = item->Count() * 2;
        for (std::int32_t passes = 0; item->Count() > 0 && passes < limit; ++passes) {
            DeleteFileOrFolder(item->TrueItem(1));
            Yield();
        }
    }
    item->Delete();
}

void UpdateUtilities::Cleanup() {
    const auto folder = ExistingTemporaryFolder();
    const auto old = folder ? folder->Child("o-" + GetExecutableFile()->Name()) : nullptr;
    if (!old || !old->Exists()) return;
    DeleteFileOrFolder(old);
    folder->Delete();  // which a folder that still holds something is spared
}

}  // namespace varnith
