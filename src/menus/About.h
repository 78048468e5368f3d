#pragma once

#include <cstdint>
#include <string>

#include "platform/ui/Canvas.h"
#include "platform/ui/StaticText.h"
#include "platform/ui/Window.h"

namespace varnith {

// The About window: the program's name, version and build date, three pictures and links to the web site.
class About : public SingleWindow<About> {
  public:
    About();

    StaticText StaticText1;
    StaticText StaticText2;
    StaticText StaticText3;
    // The copyright notice and the address of the web site. A press on either opens the site in the browser.
    StaticText StaticText4;
    StaticText StaticText5;
    Canvas Canvas1;
    Canvas Canvas2;
    Canvas Canvas3;

    void Event_Open() override;
    bool Event_KeyDown(const std::string& key) override;

    // Open the web site. x and y are not used. Always return false, so that the press is handled as usual.
    bool StaticText4_MouseDown(std::int32_t x, std::int32_t y);
    bool StaticText5_MouseDown(std::int32_t x, std::int32_t y);

  private:
    void CreateControls();
};

}  // namespace varnith
