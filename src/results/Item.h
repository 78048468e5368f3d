#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// One file type's entry in the type index of the main window.
class Item : public RefCounted {
  public:
    // The number of rows with this type.
    std::int32_t count = 0;
    // The numbers of these rows, from 1, in the order of the list.
    std::vector<std::int32_t> pos;

    // The row numbers as text, joined by "~".
    virtual std::string Positions() const;
};

}  // namespace varnith
