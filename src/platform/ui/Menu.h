#pragma once

#include <string>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// An entry of a menu, or a menu itself, which has entries of its own. What an entry does is up to the
// windows: see Window::AddMenuHandler.
class MenuItem : public RefCounted {
  public:
    std::string Name;
    // What the user reads. "&" marks the letter of the mnemonic; a single "-" makes a separator line.
    std::string Text;
    // Enabled exactly while the frontmost window has a handler for the entry.
    bool AutoEnable = false;
    // "Cmd+" and a letter; shows and answers as Ctrl+ and the letter.
    std::string KeyboardShortcut;

    void Append(const Ref<MenuItem>& item) { items_.push_back(item); }
    const std::vector<Ref<MenuItem>>& Items() const { return items_; }

    // The entry of that name, here or in a menu below, whatever the case; nil if there is none.
    Ref<MenuItem> Child(const std::string& name) const;

    bool IsSeparator() const { return Text == "-"; }

  private:
    std::vector<Ref<MenuItem>> items_;
};

// The entry that ends the program. It needs no handler and is always enabled.
class QuitMenuItem : public MenuItem {};

// The entry that tells about the program. A desktop with an application menu would have it there; here it
// stays where the tree has it.
class AppleMenuItem : public MenuItem {};

// The bar whose entries are the menus.
class MenuBar : public MenuItem {};

}  // namespace varnith
