#pragma once

#include <cstdint>
#include <string>

#include "http/HTTPSocket.h"
#include "platform/base/Date.h"
#include "platform/base/Dictionary.h"

namespace varnith {

// Asks the update server for its data file and opens the update window if that names a newer version. All
// else, no answer or one that makes no sense, ends without a word.
//
// The data file is text, in lines "key=value" that end in any way. White space around key and value does not
// count, the last of two lines with one key does. These keys are read:
//     version        the newest version, as in 1.2.3
//     download-mac   the address of its archive
//     build-date     its day, as in 2008-06-24
class UpdateChecker : public HTTPSocket {
  public:
    UpdateChecker();

    // Sends the request, which ends in Event_PageReceived or silently.
    virtual void CheckNow(const std::string& url);

    // Whether a check is due, by the time of the last one; nil for never.
    virtual bool TimeToCheck(const Ref<Date>& last_check) const;

    // The answer has come, with whatever status.
    void Event_PageReceived(const std::string& url, std::int32_t status, const Ref<InternetHeaders>& headers,
                            const std::string& content);

    // The keys and values of a data file, never nil.
    static Ref<Dictionary<std::string>> ParseDataFile(const std::string& content);

    // Opens the update window if the data names a version with a greater number than the running one's. The
    // number of a version is its first part times 1000, the second times 100 and the third.
    void CheckVersion(const Ref<Dictionary<std::string>>& data);

    // Opens the update window with the address of the download.
    void UpdateExists(const std::string& url, const std::string& file_name);
};

}  // namespace varnith
