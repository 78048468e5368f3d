#pragma once

namespace varnith {

// Owns a file descriptor and closes it in the destructor. An empty one owns none.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    // Takes ownership of a descriptor. A negative one, such as the result of a failed open(2), gives an empty
    // object.
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    explicit operator bool() const { return descriptor_ >= 0; }
    // The descriptor, negative if this is empty. This object keeps the ownership.
    int Descriptor() const { return descriptor_; }

  private:
    int descriptor_ = -1;
};

}  // namespace varnith
