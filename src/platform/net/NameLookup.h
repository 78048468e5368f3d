#pragma once

#include <memory>
#include <string>
#include <vector>

namespace varnith {

// The look-up of a host name, which runs beside the program: a worker of its own asks the system. A numeric
// address is its own result and needs no worker. Dropping the object forgets the question; an answer that
// comes afterwards reaches nobody.
class NameLookup {
  public:
    explicit NameLookup(const std::string& name);
    ~NameLookup();

    // Ready for reading once the look-up is done.
    int Descriptor() const;
    bool Done() const;

    // The numeric addresses of the name as text, the preferred one first; none if it can't be resolved.
    // REQUIRES: done.
    const std::vector<std::string>& Addresses() const;

  private:
    struct Answer;
    std::shared_ptr<Answer> answer_;
};

}  // namespace varnith
