#pragma once

#include <string>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// An entry of a menu, or a menu with entries of its own. Window::AddMenuHandler gives an entry its action.
class MenuItem : public RefCounted {
  public:
    std::string Name;
    // The text that is shown, in UTF-8. "&" marks the mnemonic; a text of only "-" makes a separator.
    std::string Text;
    // If true, the entry is enabled while the frontmost window has a handler for it; if false, it is
    // disabled. A menu with entries is always enabled.
    bool AutoEnable = false;
    // Empty, or "Cmd+" and a letter. It stands for Ctrl+ and the letter.
    std::string KeyboardShortcut;

    void Append(const Ref<MenuItem>& item) { items_.push_back(item); }
    const std::vector<Ref<MenuItem>>& Items() const { return items_; }

    // The entry of that name, here or in a submenu, regardless of case; nil if there is none.
    Ref<MenuItem> Child(const std::string& name) const;

    bool IsSeparator() const { return Text == "-"; }

  private:
    std::vector<Ref<MenuItem>> items_;
};

// The entry that quits the program. It needs no handler and is always enabled.
class QuitMenuItem : public MenuItem {};

// The "About" entry. On a desktop with an application menu it would move there; here it stays in its menu.
class AppleMenuItem : public MenuItem {};

// The menu bar. Its entries are the menus.
class MenuBar : public MenuItem {};

}  // namespace varnith
