#pragma once

#include <cstdint>
#include <string>

#include "platform/ui/Canvas.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Window.h"

namespace varnith {

// Tells the program's name, version and build date, with three pictures, and leads to the maker's web site.
class About : public SingleWindow<About> {
  public:
    About();

    StaticText StaticText1;
    StaticText StaticText2;
    StaticText StaticText3;
    // The maker's notice and the address of the web site. A press on either opens the site.
    StaticText StaticText4;
    StaticText StaticText5;
    Canvas Canvas1;
    Canvas Canvas2;
    Canvas Canvas3;

    void Event_Open() override;
    bool Event_KeyDown(const std::string& key) override;

    // The place of the press doesn't matter; the rest of the click is left alone.
    bool StaticText4_MouseDown(std::int32_t x, std::int32_t y);
    bool StaticText5_MouseDown(std::int32_t x, std::int32_t y);

  private:
    void CreateControls();
};

}  // namespace varnith
