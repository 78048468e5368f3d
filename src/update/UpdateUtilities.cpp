#include "update/UpdateUtilities.h"

#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/files/SpecialFolders.h"
#include "platform/system/ApplicationLaunch.h"
#include "platform/system/Shell.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

namespace varnith {

namespace {

// The first launch starts the application. Each later one brings its windows to the front, so that the user
// sees the new application when the old one quits.
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
    if (!download || !download->Exists()) {
        if (download && IsTracing())
            TraceFailure("install the update", download->AbsolutePath(), "there is no such file");
        return false;
    }
    const auto application = GetExecutableFile();
    const std::string name = application->Name();
    const auto temporary_folder = TemporaryFolder();
    // An archive must not be unpacked in the folder of the application, unless that is the temporary folder.
    // Some file systems ignore case, so this comparison does too.
    if (SameText(download->Parent()->ShellPath(), application->Parent()->ShellPath())) {
        const auto elsewhere = temporary_folder->Child(download->Name());
        download->MoveFileTo(elsewhere);
        download = elsewhere;
    }
    const auto extracted = ExtractArchive(download);
    if (!extracted) return false;

    // From here on no step is checked and none is undone. The program quits whatever happens.
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
        // This is the application itself. It has to be executable, and HTTP transfers no file mode.
        download->SetPermissions(0755);
        return download;
    }
    const auto folder = download->Parent();
    Shell shell;
    shell.Execute((InStr(name, ".gz") > 0 ? "tar -xzvf " : "tar -xvf ") + download->ShellPath() + " -C " +
                  folder->ShellPath());
    // tar lists what it unpacks, so the first line begins with the name of the application's folder. tar's
    // exit status doesn't matter: that folder exists or it doesn't.
    const auto extracted = folder->Child(NthField(shell.Result(), "/", 1));
    if (!extracted || !extracted->Exists()) {
        if (IsTracing())
            TraceFailure(
                "unpack the update", download->AbsolutePath(),
                "there is nothing to install in it; tar says \"" + Mid(shell.Result(), 1, 200) + "\"");
        return nullptr;
    }
    DeleteFileOrFolder(download);
    return extracted;
}

void UpdateUtilities::DeleteFileOrFolder(const Ref<FolderItem>& item) {
    if (!item || !item->Exists()) return;
    if (item->Directory()) {
        // An entry that can't be deleted stays the first one, so the loop needs a limit.
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
    folder->Delete();  // has no effect unless it is empty
}

}  // namespace varnith
