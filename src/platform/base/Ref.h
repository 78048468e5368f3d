#pragma once

#include <concepts>
#include <cstddef>
#include <utility>

#include "platform/base/Exceptions.h"

namespace varnith {

// The base of all objects that a Ref can point to. It counts the references. The count is not atomic: the
// program's code runs on one OS thread, and a worker thread must never hold a Ref.
class RefCounted {
  public:
    RefCounted() = default;
    RefCounted(const RefCounted&) = delete;
    RefCounted& operator=(const RefCounted&) = delete;
    virtual ~RefCounted() = default;

  protected:
    std::size_t References() const { return references_; }

  private:
    template <class T>
    friend class Ref;
    mutable std::size_t references_ = 0;
};

// A reference-counted pointer that may be nil. The last Ref to an object deletes it.
// Using a nil Ref raises NilObjectException; a null pointer is never dereferenced.
// T may be incomplete where a Ref is only held, so a header may forward-declare the class.
template <class T>
class Ref {
  public:
    Ref() = default;
    Ref(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): nil is a value of every Ref
    explicit Ref(T* object) : counted_(object) { Retain(); }
    Ref(const Ref& other) : counted_(other.counted_) { Retain(); }
    Ref(Ref&& other) noexcept : counted_(std::exchange(other.counted_, nullptr)) {}
    template <std::derived_from<T> U>
    Ref(const Ref<U>& other) : counted_(other.counted_) {  // NOLINT(google-explicit-constructor): as a T*
        Retain();
    }
    ~Ref() { Release(); }

    Ref& operator=(Ref other) noexcept {
        std::swap(counted_, other.counted_);
        return *this;
    }

    explicit operator bool() const { return counted_ != nullptr; }
    T* operator->() const { return NotNil(); }
    T& operator*() const { return *NotNil(); }

    // The object, null for nil. The Ref keeps the ownership.
    T* Get() const { return static_cast<T*>(counted_); }

    // A Ref to the same object if it is a T, else nil.
    template <class U>
    static Ref As(const Ref<U>& other) {
        return Ref(dynamic_cast<T*>(other.Get()));
    }

    friend bool operator==(const Ref& a, const Ref& b) { return a.counted_ == b.counted_; }

  private:
    template <class U>
    friend class Ref;

    T* NotNil() const {
        if (!counted_) throw NilObjectException();
        return Get();
    }
    void Retain() const {
        if (counted_) ++counted_->references_;
    }
    void Release() const {
        if (counted_ && --counted_->references_ == 0) delete counted_;
    }

    RefCounted* counted_ = nullptr;
};

// Constructs an object and returns the first Ref to it.
template <class T, class... Arguments>
Ref<T> MakeRef(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace varnith
