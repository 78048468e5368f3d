#pragma once

#include <utility>

namespace varnith {

// Puts an object in force for a scope, in the place of the one that its class has by default. So a test puts
// a double between the program and the system. REQUIRES: made and dropped in pairs, like brackets.
template <class T>
class InForce {
  public:
    explicit InForce(T& object) : previous_(std::exchange(current, &object)) {}
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;
    ~InForce() { current = previous_; }

    // The one in force, or else that one.
    static T& Or(T& otherwise) { return current ? *current : otherwise; }

  private:
    static inline T* current = nullptr;

    T* previous_;
};

}  // namespace varnith
