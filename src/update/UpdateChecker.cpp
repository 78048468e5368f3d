#include "update/UpdateChecker.h"

#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"
#include "update/AutoUpdateWindow.h"

namespace varnith {

namespace {

// The days between two checks; with 0 the program checks at every start.
constexpr std::int32_t CheckInterval = 0;

constexpr std::size_t LongestAnswer = 1 << 20;

// The parts overlap: 1.10.0 and 2.0.0 are the same number, 2000. Releases are numbered with that in mind. A
// number that doesn't fit becomes the greatest one.
std::int32_t VersionNumber(double major, double minor, double bug) {
    return WholeNumber(major * 1000 + minor * 100 + bug);
}

std::int32_t NumberOf(const std::string& version) {
    return VersionNumber(Val(NthField(version, ".", 1)), Val(NthField(version, ".", 2)),
                         Val(NthField(version, ".", 3)));
}

std::int32_t RunningNumber() {
    const Application& running = Application::Current();
    return VersionNumber(running.MajorVersion(), running.MinorVersion(), running.BugVersion());
}

}  // namespace

UpdateChecker::UpdateChecker() {
    PageReceived = [this](const std::string& url, std::int32_t status, const Ref<InternetHeaders>& headers,
                          const std::string& content) { Event_PageReceived(url, status, headers, content); };
    ReceiveProgress = [this](std::int32_t received, std::int32_t /*total*/, const std::string& /*piece*/) {
        DropIfLonger(static_cast<std::size_t>(received));
    };
    Error = [this](std::int32_t /*code*/) {
        TraceFailure("check for a newer version on", Address, "the update server can't be reached");
    };
}

// Of an answer whose head does not end, no progress is told.
void UpdateChecker::Event_DataAvailable() {
    HTTPSocket::Event_DataAvailable();
    DropIfLonger(Lookahead().size());
}

void UpdateChecker::DropIfLonger(std::size_t bytes) {
    if (bytes <= LongestAnswer || !IsConnected()) return;
    TraceFailure("check for a newer version on", Address, "the answer is too long");
    Close();
}

void UpdateChecker::CheckNow(const std::string& url) {
    Get(url);
}

bool UpdateChecker::TimeToCheck(const Ref<Date>& last_check) const {
    if (!last_check) return true;
    last_check->SetDay(last_check->Day() + CheckInterval);
    const Date now;
    return now.TotalSeconds() >= last_check->TotalSeconds();
}

void UpdateChecker::Event_PageReceived(const std::string& /*url*/, std::int32_t /*status*/,
                                       const Ref<InternetHeaders>& /*headers*/, const std::string& content) {
    CheckVersion(ParseDataFile(content));
}

Ref<Dictionary<std::string>> UpdateChecker::ParseDataFile(const std::string& content) {
    const auto data = MakeRef<Dictionary<std::string>>();
    const std::string text = ReplaceAll(ReplaceAll(content, "\r\n", "\n"), "\r", "\n");
    std::size_t start = 0;
    while (start != text.npos) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        const std::size_t equals = line.find('=');
        data->SetValue(Trim(line.substr(0, equals)),
                       equals == line.npos ? "" : Trim(line.substr(equals + 1)));
        varnith::Yield();
        start = end == text.npos ? end : end + 1;
    }
    return data;
}

void UpdateChecker::CheckVersion(const Ref<Dictionary<std::string>>& data) {
    if (!data || !data->HasKey("version"))
        return TraceFailure("check for a newer version on", Address, "the answer names no version");
    if (NumberOf(data->Value("version")) <= RunningNumber()) return;
    // The date is read but has no effect: every newer version is offered.
    Date build_date;
    build_date.SetSQLDate(data->Lookup("build-date", build_date.SQLDate()));
    const std::string url = data->Lookup("download-mac", "");
    UpdateExists(url, NthField(url, "/", CountFields(url, "/")));
}

void UpdateChecker::UpdateExists(const std::string& url, const std::string& /*file_name*/) {
    AutoUpdateWindow::Instance()->Init(url);
}

}  // namespace varnith
