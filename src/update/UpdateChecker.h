#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "http/HTTPSocket.h"
#include "platform/base/Date.h"
#include "platform/base/Dictionary.h"

namespace varnith {

// Asks the update server for its data file and opens the update window if the file names a newer version. If
// there is no answer, or no version in it, the user sees nothing. An answer of more than 1 MiB is dropped
// while it arrives: whoever can change the traffic could otherwise fill the memory at each start.
//
// The data file is text in lines "key=value" that end with CR, LF or CRLF. White space around keys and values
// is ignored. If a key occurs twice, the later line counts. These keys are read:
//     version        the newest version, such as 1.2.3
//     download-mac   the URL of its archive
//     build-date     the day on which it was built, such as 2008-06-24
class UpdateChecker : public HTTPSocket {
  public:
    UpdateChecker();

    // Requests the data file and returns. Event_PageReceived handles the answer; a failure is not reported.
    virtual void CheckNow(const std::string& url);

    // Whether a check is due, given the time of the last one or nil if there was none. Moves that date to the
    // day on which the next check is due.
    virtual bool TimeToCheck(const Ref<Date>& last_check) const;

    // Handles the answer, whatever its status.
    void Event_PageReceived(const std::string& url, std::int32_t status, const Ref<InternetHeaders>& headers,
                            const std::string& content);

    // The keys and values of a data file, never nil.
    static Ref<Dictionary<std::string>> ParseDataFile(const std::string& content);

    // Opens the update window if the data names a version whose number is greater than that of the running
    // one. The number is the sum of the first part times 1000, the second part times 100, and the third. Nil
    // data names no version.
    void CheckVersion(const Ref<Dictionary<std::string>>& data);

    // Opens the update window with the URL of the download. The file's name is not used.
    void UpdateExists(const std::string& url, const std::string& file_name);

  protected:
    void Event_DataAvailable() override;

  private:
    void DropIfLonger(std::size_t bytes);
};

}  // namespace varnith
