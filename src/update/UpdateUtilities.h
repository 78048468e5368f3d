#pragma once

#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"

namespace varnith {

class UpdateChecker;

// How the program updates itself. At each start it asks the update server for the newest version. If the user
// accepts, it downloads that version and puts it in the place of the running one.
//
// The running application is never overwritten. The new one moves beside it under the name "n-" + its name.
// Then the running one moves to the temporary folder as "o-" + its name and runs on from there until it
// quits. Last, the new one is renamed to the name that is free now.
class UpdateUtilities {
  public:
    // The latest check, nil before the first. This Ref keeps it alive until its answer has arrived.
    static Ref<UpdateChecker> checker;

    // Starts a check if one is due or `force` is true, and stores today as the day of the last check. Does
    // not wait for the answer, which UpdateChecker handles.
    static void Check(bool force);

    // The application: the bundle that contains the running executable, else the executable itself.
    static Ref<FolderItem> GetExecutableFile();

    // Puts a download in the place of the application, starts it and quits. Returns false if the download is
    // nil, doesn't exist or contains nothing to install; the application is unchanged then. Later failures
    // are not noticed, and the program quits all the same. Raises NilObjectException if there is no temporary
    // folder.
    static bool SwapFiles(Ref<FolderItem> download);

    // Unpacks a tar archive into the folder that contains it, and deletes the archive. Returns the unpacked
    // item. If there is none, returns nil and leaves the archive. A file without ".tar" in its name is taken
    // for the application itself: it gets mode 0755 and is returned.
    static Ref<FolderItem> ExtractArchive(const Ref<FolderItem>& download);

    // Deletes a file, or a folder with all its contents, as far as possible. Nothing happens for nil.
    static void DeleteFileOrFolder(const Ref<FolderItem>& item);

    // Deletes the old application that the last update moved to the temporary folder, and then that folder if
    // it is empty.
    static void Cleanup();
};

}  // namespace varnith
