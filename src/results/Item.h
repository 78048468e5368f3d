#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// The entry of the type index for one type.
class Item : public RefCounted {
  public:
    // How many rows have this type.
    std::int32_t count = 0;
    // The number of each of these rows, from 1, in the order of the list.
    std::vector<std::int32_t> pos;

    // These numbers as text, joined by "~".
    virtual std::string Positions() const;
};

}  // namespace varnith
