#include "platform/ui/Dialogs.h"

#include "platform/ui/Desktop.h"

namespace varnith {

Ref<FolderItem> SelectFolder() {
    const auto path = Desktop::Current().ChooseFolder();
    return path ? FolderItem::FromPath(*path) : nullptr;
}

Ref<FolderItem> GetSaveFolderItem(const std::string& file_type, const std::string& default_name) {
    const auto path = Desktop::Current().ChooseFileToWrite(file_type, default_name);
    return path ? FolderItem::FromPath(*path) : nullptr;
}

void MsgBox(const std::string& text) {
    Desktop::Current().ShowMessage(text);
}

void Beep() {
    Desktop::Current().Beep();
}

void ShowURL(const std::string& url) {
    Desktop::Current().OpenURL(url);
}

}  // namespace varnith
