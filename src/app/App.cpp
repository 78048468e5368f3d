#include "app/App.h"

#include "BuildSettings.h"
#include "menus/Pictures.h"
#include "platform/base/Exceptions.h"
#include "platform/base/Trace.h"
#include "platform/database/Database.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FolderItem.h"
#include "platform/files/SpecialFolders.h"
#include "platform/ui/Desktop.h"
#include "settings/Prefs.h"
#include "update/UpdateUtilities.h"

namespace varnith {

namespace {

template <class... Exceptions>
bool IsOneOf(const std::exception& error) {
    return ((dynamic_cast<const Exceptions*>(&error) != nullptr) || ...);
}

void MakeResultsDatabaseIfMissing() {
    Database database;
    const auto file = GetFolderItem("varnth");
    if (file && file->Exists()) return;
    // Looked up again: the first item is nil if the folder was missing, and the folder may be back by now.
    database.SetDatabaseFile(GetFolderItem("varnth"));
    if (database.CreateDatabaseFile())
        database.SQLExecute(
            "create table preferences (name varchar, pagecount varchar, filepath varchar, filetype varchar)");
}

// A copy that an administrator has installed for all users works without these folders. Whoever looks for the
// reason why the filter stays empty finds it here.
void TellWhatCannotBeWritten() {
    const FileSystem& disk = FileSystem::Current();
    const auto application = ApplicationItem();
    const std::string folder = application->Parent()->AbsolutePath();
    if (!disk.MayChange(folder))
        return TellFailure(
            "write to", folder,
            "results are not kept, the filter shows nothing new, and updates can't be installed");
    // An update moves the bundle away. That changes the entry ".." in it.
    const std::string path = application->AbsolutePath();
    if (application->Directory() && !disk.MayChange(path))
        TellFailure("write to", path, "updates can't be installed");
}

}  // namespace

App::App() {
    Desktop::Current().SetIcon(*Pictures::file128());
    SetVersion({BuildSettings::MajorVersion, BuildSettings::MinorVersion, BuildSettings::BugVersion});
}

App& App::Instance() {
    return static_cast<App&>(Application::Current());
}

void App::Event_Open() {
    TellWhatCannotBeWritten();
    MakeResultsDatabaseIfMissing();
    UpdateUtilities::Cleanup();
    Prefs::file = PreferencesFolder()->Child("varnth");
    UpdateUtilities::Check(false);
}

bool App::Event_UnhandledException(const std::exception& error) {
    return IsOneOf<FunctionNotFoundException, IllegalCastException, InvalidParentException, KeyChainException,
                   KeyNotFoundException, NilObjectException, NoOpenTransportException, OLEException,
                   OutOfBoundsException, OutOfMemoryException, RegExException, RegExSearchPatternException,
                   RegistryAccessErrorException>(error);
}

}  // namespace varnith
