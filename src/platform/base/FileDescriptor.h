#pragma once

namespace varnith {

// A file descriptor of the system, of a file, a socket or whatever else has one. It is closed with its
// object. Movable; an empty one holds none.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    // Takes over a descriptor; one below 0 is none.
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    explicit operator bool() const { return descriptor_ >= 0; }
    // The number by which the system knows it, -1 for none. It stays this object's.
    int Descriptor() const { return descriptor_; }

  private:
    int descriptor_ = -1;
};

}  // namespace varnith
