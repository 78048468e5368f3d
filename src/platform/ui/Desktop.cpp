#include "platform/ui/Desktop.h"

#include <utility>

namespace varnith {

namespace {
Desktop* in_force = nullptr;
}

Desktop& Desktop::Current() {
    static Desktop without_display;
    return in_force ? *in_force : without_display;
}

Desktop::InForce::InForce(Desktop& desktop) : previous_(std::exchange(in_force, &desktop)) {}

Desktop::InForce::~InForce() {
    in_force = previous_;
}

}  // namespace varnith
