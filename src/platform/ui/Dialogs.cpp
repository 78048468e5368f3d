#include "platform/ui/Dialogs.h"

#include "platform/ui/Desktop.h"

namespace varnith {

Ref<FolderItem> SelectFolder() {
    const auto path = Desktop::Current().ChooseFolder();
    return path ? FolderItem::FromPath(*path) : nullptr;
}

void MsgBox(const std::string& text) {
    Desktop::Current().ShowMessage(text);
}

void ShowURL(const std::string& url) {
    Desktop::Current().OpenURL(url);
}

}  // namespace varnith
