#pragma once

#include <string>

namespace varnith {

// Runs command lines of the system's shell, /bin/sh.
class Shell {
  public:
    // Runs a command line and waits for its end, without giving way to anybody. It gets no input. Where it
    // can't be run the result is empty. The exit status is not kept.
    void Execute(const std::string& command_line);

    // What the last command has written: its standard output, then its standard error behind it, so that a
    // warning never stands in front of a listing.
    const std::string& Result() const { return result_; }

  private:
    std::string result_;
};

}  // namespace varnith
