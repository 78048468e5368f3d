#include "http/HTTPSocket.h"

#include <chrono>
#include <utility>

#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/threads/Scheduler.h"
#include "platform/ui/Application.h"

namespace varnith {

HTTPSocket::HTTPSocket() {
    EnsureRequestHeaders();
}

void HTTPSocket::Get(const std::string& url) {
    Start(url, "GET", nullptr);
}

void HTTPSocket::Get(const std::string& url, const Ref<FolderItem>& file) {
    Start(url, "GET", file);
}

void HTTPSocket::Post(const std::string& url) {
    Start(url, "POST", nullptr);
}

void HTTPSocket::Post(const std::string& url, const Ref<FolderItem>& file) {
    Start(url, "POST", file);
}

void HTTPSocket::GetHeaders(const std::string& url) {
    Start(url, "HEAD", nullptr);
}

std::string HTTPSocket::Get(const std::string& url, std::int32_t timeout) {
    const Alive alive(*this);
    StartAndWait(url, "GET", nullptr, timeout);
    return _pageBuffer;
}

std::string HTTPSocket::Post(const std::string& url, std::int32_t timeout) {
    const Alive alive(*this);
    StartAndWait(url, "POST", nullptr, timeout);
    return _pageBuffer;
}

bool HTTPSocket::Get(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout) {
    const Alive alive(*this);
    StartAndWait(url, "GET", file, timeout);
    return mErrorCode == 0;
}

bool HTTPSocket::Post(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout) {
    const Alive alive(*this);
    StartAndWait(url, "POST", file, timeout);
    return mErrorCode == 0;
}

Ref<InternetHeaders> HTTPSocket::GetHeaders(const std::string& url, std::int32_t timeout) {
    const Alive alive(*this);
    StartAndWait(url, "HEAD", nullptr, timeout);
    return _pageHeaders;
}

void HTTPSocket::Start(const std::string& url, const std::string& method, const Ref<FolderItem>& file) {
    synchronous = false;
    _authenticationKey.clear();
    _DoConnect(url, method, file);
}

void HTTPSocket::StartAndWait(const std::string& url, const std::string& method, const Ref<FolderItem>& file,
                              std::int32_t timeout) {
    synchronous = true;
    timeoutSeconds = timeout;
    _authenticationKey.clear();
    _DoConnect(url, method, file);
    WaitForPage();
}

// The arguments are passed by value because a retry passes the members that this function assigns.
void HTTPSocket::_DoConnect(std::string url, std::string method, Ref<FolderItem> file) {
    mErrorCode = 0;
    _ParseURL(url);
    _processingURL = std::move(url);
    if (!_SetDownloadFile(std::move(file))) return;
    if (!HTTPProxyAddress.empty()) {
        Address = HTTPProxyAddress;
        Port = HTTPProxyPort == 0 ? DefaultPort : HTTPProxyPort;
    }
    _httpAction = std::move(method);
    Close();
    Purge();
    Connect();
}

bool HTTPSocket::_SetDownloadFile(Ref<FolderItem> file) {
    _KillDownloadStream();
    if (!file) return true;
    const auto empty = file->Directory() ? nullptr : file->CreateTextFile();
    if (empty) empty->Close();
    _downloadStream = empty ? file->OpenAsBinaryFile() : nullptr;
    if (!_downloadStream) {
        if (IsTracing())
            TraceFailure("write the download to", file->AbsolutePath(),
                         file->Directory() ? "it is a folder" : "it can't be opened for writing");
        SetError(FileNotWriteable);
        return false;
    }
    _downloadFile = std::move(file);
    return true;
}

void HTTPSocket::_KillDownloadStream() {
    _downloadFile = nullptr;
    if (_downloadStream) _downloadStream->Close();
    _downloadStream = nullptr;
}

void HTTPSocket::WaitForPage() {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 60>>;
    const auto now = [] {
        return std::chrono::floor<Ticks>(std::chrono::steady_clock::now().time_since_epoch());
    };
    const Alive alive(*this);
    const Ticks limit{std::int64_t{timeoutSeconds} * 60};
    // If the download file can't be written, no request was sent. This forgets that error, so the wait lasts
    // until the time-out.
    _pageComplete = false;
    mErrorCode = 0;
    bool last_valid = false;
    // In bytes: counting characters would need a pass over the page. A page that goes into a file leaves the
    // buffer empty, so its time runs from the connection on.
    std::size_t last_length = 0;
    Ticks deadline = now() + limit;
    while (!_pageComplete && mErrorCode == 0) {
        Poll();
        if (Yield) Application::Current().DoEvents(-1);
        if (_connectionValid != last_valid) {
            last_valid = _connectionValid;
            deadline = now() + limit;
        } else if (_pageBuffer.size() != last_length) {
            last_length = _pageBuffer.size();
            deadline = now() + limit;
        }
        if (timeoutSeconds > 0 && deadline < now()) {
            TraceFailure("get an answer from", _server, "the time-out has passed");
            Close();
            SetError(TimedOut);
            break;
        }
        varnith::Yield();
    }
}

}  // namespace varnith
