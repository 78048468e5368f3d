#pragma once

#include <string>

namespace varnith {

// Runs command lines in the system's shell, /bin/sh.
class Shell {
  public:
    // Runs a command line with empty input and blocks until it ends; it is no yield point. If it can't be
    // started, the result is empty. The exit status is not kept.
    void Execute(const std::string& command_line);

    // The bytes that the last command has written: all of its standard output followed by all of its standard
    // error, so that warnings never precede a listing.
    const std::string& Result() const { return result_; }

  private:
    std::string result_;
};

}  // namespace varnith
