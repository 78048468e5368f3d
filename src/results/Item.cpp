#include "results/Item.h"

#include "platform/base/Text.h"

namespace varnith {

std::string Item::Positions() const {
    std::string positions;
    for (const std::int32_t position : pos) positions += (positions.empty() ? "" : "~") + Str(position);
    return positions;
}

}  // namespace varnith
