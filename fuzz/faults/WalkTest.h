#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "helpers/ProgramTest.h"

namespace varnith::test {

// All that the program does in one run without a display: the start with the settings and the check for an
// update, a scan with its save, the filter, each export, a ticket, and the installation of the update.
class WalkTest : public ProgramTest {
  public:
    // Makes the archive of an update in a folder, and starts processes that answer as the maker's server does
    // until this process ends. REQUIRES: called once, before the first test.
    static void StartServers(const std::string& folder);

  protected:
    WalkTest();

    // Walks once while something is wrong, between `begin` and `end`. Then checks that each file is as it was
    // before or as it was to be, and that a second walk, with nothing wrong, succeeds. `first` says that the
    // program has never run before.
    void Check(bool first, const std::function<void()>& begin, const std::function<void()>& end);

  private:
    void MakeApplication();
    void Walk();
    static void WaitFor(const std::function<bool()>& condition);
    static void Export(std::int32_t format);
    void NoteExported(std::int32_t format);
    static void SendTicket();
    void Install();

    void CheckMessages() const;
    // `may_lack` says that what was there before will do.
    void CheckSaved(bool may_lack) const;
    void CheckSettings(bool may_lack) const;
    void CheckExports(bool may_lack) const;
    void CheckApplication() const;

    bool first_ = false;
    // What the list held when it was saved and when it was exported.
    Lines scanned_;
    std::string exported_[3];
};

}  // namespace varnith::test
