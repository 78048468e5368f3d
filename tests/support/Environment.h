#pragma once

#include <optional>
#include <string>

#include <stdlib.h>

namespace varnith::test {

// A variable of the environment that has a value of the test's own for as long as this lives.
class Environment {
  public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* previous = getenv(name)) previous_ = previous;
        setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { previous_ ? setenv(name_, previous_->c_str(), 1) : unsetenv(name_); }

  private:
    const char* name_;
    std::optional<std::string> previous_;
};

}  // namespace varnith::test
