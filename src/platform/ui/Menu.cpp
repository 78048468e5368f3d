#include "platform/ui/Menu.h"

#include "platform/base/Text.h"

namespace varnith {

Ref<MenuItem> MenuItem::Child(const std::string& name) const {
    for (const Ref<MenuItem>& item : items_) {
        if (SameText(item->Name, name)) return item;
        if (const auto below = item->Child(name)) return below;
    }
    return nullptr;
}

}  // namespace varnith
