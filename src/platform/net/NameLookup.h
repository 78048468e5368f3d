#pragma once

#include <memory>
#include <string>
#include <vector>

namespace varnith {

// Looks up a host name in the background: a thread of its own calls getaddrinfo(3). The constructor starts
// the look-up. For a numeric address it is done at once, without a thread. Destroying the object abandons the
// look-up; the thread ends by itself.
class NameLookup {
  public:
    explicit NameLookup(const std::string& name);
    ~NameLookup();

    // A descriptor that becomes ready for reading when the look-up is done. This object owns it.
    int Descriptor() const;
    bool Done() const;

    // The numeric addresses of the name as text, the preferred one first. Empty if the name can't be
    // resolved. REQUIRES: Done().
    const std::vector<std::string>& Addresses() const;

  private:
    struct Answer;
    std::shared_ptr<Answer> answer_;
};

}  // namespace varnith
