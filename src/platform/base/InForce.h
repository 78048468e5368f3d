#pragma once

#include <utility>

namespace varnith {

// Makes an object the current one of its class while this exists, instead of the default one. Tests use it to
// put a test double between the program and the system. Does not own the object.
// REQUIRES: several of these for one class are destroyed in the reverse order of their construction.
template <class T>
class InForce {
  public:
    explicit InForce(T& object) : previous_(std::exchange(current, &object)) {}
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;
    ~InForce() { current = previous_; }

    // The current object, `otherwise` if there is none.
    static T& Or(T& otherwise) { return current ? *current : otherwise; }

  private:
    static inline T* current = nullptr;

    T* previous_;
};

}  // namespace varnith
