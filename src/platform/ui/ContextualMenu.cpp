#include "platform/ui/ContextualMenu.h"

#include "platform/ui/Desktop.h"

namespace varnith {

void ContextualMenu::Open() {
    if (const auto choice = Desktop::Current().ChooseFromMenu(rows_)) Fire(Action, rows_[*choice]);
}

bool IsContextualClick() {
    return Desktop::Current().IsContextualPress();
}

}  // namespace varnith
