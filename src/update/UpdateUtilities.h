#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

class UpdateChecker;

// How the program keeps itself current. At each start it asks the update server for the newest version; the
// user may have it downloaded; then it takes the place of the running one. The running application is never
// overwritten: it moves to the temporary folder, named "o-" and its name, and runs on from there until it
// quits. The new one comes in beside it, named "n-" and its name, and takes over the name that has become
// free.
class UpdateUtilities {
  public:
    // The check whose answer is awaited or has come, nil before the first. Holding it keeps it alive.
    static Ref<UpdateChecker> checker;

    // Starts a check if one is due by the time of the last one, or anyhow if forced to, and notes down today
    // as that time. Returns at once; what comes of it is up to UpdateChecker.
    static void Check(bool force);

    // The application as a whole: the bundle that the running executable lies in, else the executable.
    static Ref<FolderItem> GetExecutableFile();

    // Puts a download in the place of the application, starts it and quits. False if the download is missing
    // or holds nothing to install; then the application is as it was. Failures later than that are not
    // noticed: the program quits all the same.
    static bool SwapFiles(Ref<FolderItem> download);

    // Unpacks a tar archive beside itself and deletes it. Returns what it holds, nil if that is nothing; then
    // the archive stays. A file without ".tar" in its name counts as the application itself: it gets the mode
    // 0755, because it has to run and a server sends no mode.
    static Ref<FolderItem> ExtractArchive(const Ref<FolderItem>& download);

    // Deletes a file, or a folder with all that it holds, as far as that can be done. Nil is nothing.
    static void DeleteFileOrFolder(const Ref<FolderItem>& item);

    // Deletes what the last update has left behind, and the temporary folder if it is empty then.
    static void Cleanup();
};

}  // namespace varnith
