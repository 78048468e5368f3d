#pragma once

#include <utility>

namespace varnith {

// The base class of everything that has a view. A change of state only marks the view as stale, and the view
// reads the state with the next frame. So a change is cheap, however many there are in a frame.
class Observed {
  public:
    class Observer {
      public:
        virtual ~Observer() = default;
        // Called at every change. Must return at once and must not read the state.
        virtual void Changed() = 0;
    };

    Observed() = default;
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    // Sets the observer; null for none. The observer isn't owned and must unset itself before it is
    // destroyed.
    void SetObserver(Observer* observer) { observer_ = observer; }

  protected:
    ~Observed() = default;

    void MarkChanged() {
        if (observer_) observer_->Changed();
    }

    // Sets a property and, if its value changes, marks the view as stale.
    template <class T, class U>
    void Set(T& property, U&& value) {
        if (property == value) return;
        property = std::forward<U>(value);
        MarkChanged();
    }

  private:
    Observer* observer_ = nullptr;
};

}  // namespace varnith
