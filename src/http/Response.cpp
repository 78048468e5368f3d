#include <string_view>
#include <utility>

#include "http/HTTPSocket.h"
#include "platform/base/Base64.h"
#include "platform/base/Event.h"
#include "platform/base/Text.h"
#include "platform/base/Trace.h"

namespace varnith {

template <class... Parameters, class... Arguments>
void HTTPSocket::Raise(const std::function<void(Parameters...)>& event, const Arguments&... arguments) {
    if (!synchronous && !IsLetGo()) RunSlot(nullptr, event, arguments...);
}

void HTTPSocket::SetError(std::int32_t code) {
    mErrorCode = code;
    Raise(Error, code);
}

Ref<InternetHeaders> HTTPSocket::PageHeaders() const {
    return _pageHeaders && _pageHeaders->Count() > 0 ? _pageHeaders : nullptr;
}

void HTTPSocket::Event_Connected() {
    _connectionValid = true;
    _ResetVariables();
    Raise(Connected);
    if (_httpAction.empty()) _httpAction = "GET";
    _SendRequest(_httpAction);
}

void HTTPSocket::_ResetVariables() {
    _pageBuffer.clear();
    _pageHeaders = nullptr;
    _httpStatusCode = 0;
    _totalLength = 0;
    _currentLength = 0;
    _pageComplete = false;
    searched_length_ = 0;
}

void HTTPSocket::Event_DataAvailable() {
    _HandleNewData();
}

// A close ends the page. Unread bytes of an unfinished head never become a page: only a time-out ends such a
// request.
//
// _connectionValid stays set when a new request drops a standing connection. So if the new request can't
// connect, it ends as an empty page and not with an error.
void HTTPSocket::Event_Error() {
    if (!std::exchange(_connectionValid, false)) {
        SetError(LastErrorCode());
    } else if (Lookahead().empty()) {
        _ProcessPage();
    } else {
        // _ProcessData completes the page of a 401.
        if (_httpStatusCode != 401)
            TraceFailure("complete the page of", _server,
                         _pageHeaders ? "the connection ended before all of it was read"
                                      : "the connection ended within the head");
        _HandleNewData();
    }
}

void HTTPSocket::_HandleNewData() {
    // True while a handler that this function has called runs the event loop. That call reads the bytes.
    if (threadProtection) return;
    threadProtection = true;
    struct Unprotect {
        bool& protection;
        ~Unprotect() { protection = false; }
    } const unprotect{threadProtection};

    if (_pageHeaders)
        _ProcessData(ReadAll());
    else if (const auto end = FindHeadEnd())
        HandleHead(*end);
}

// Finds the blank line that ends the head: tries CRLF CRLF, LF LF, CR CR, in that order.
std::optional<HTTPSocket::HeadEnd> HTTPSocket::FindHeadEnd() {
    const std::string& unread = Lookahead();
    constexpr std::size_t LongestGap = 4;
    const std::size_t from = searched_length_ < LongestGap ? 0 : searched_length_ - LongestGap;
    for (const std::string_view gap : {"\r\n\r\n", "\n\n", "\r\r"}) {
        const std::size_t found = unread.find(gap, from);
        if (found != unread.npos) return HeadEnd{found, gap.size()};
    }
    searched_length_ = unread.size();
    return std::nullopt;
}

void HTTPSocket::HandleHead(const HeadEnd& end) {
    _ParseHeaders(Read(static_cast<std::int32_t>(end.head)));
    if (_httpStatusCode == 401 && _SetAuthentication()) {
        _DoConnect(_processingURL, _httpAction, _downloadFile);
        return;
    }
    Raise(HeadersReceived, _pageHeaders, _httpStatusCode);
    Read(static_cast<std::int32_t>(end.gap));
    _ProcessData(ReadAll());
}

void HTTPSocket::_ParseHeaders(const std::string& head) {
    _pageHeaders = MakeRef<InternetHeaders>();
    const std::string first_line = NthField(head, _pageHeaders->_DetermineEOLCharacter(head), 1);
    _httpStatusCode = WholeNumber(Val(NthField(first_line, " ", 2)));
    _pageHeaders->_ParseHeaders(head);
    if (_pageHeaders->NameCount("Content-length") > 0)
        _totalLength = WholeNumber(Val(_pageHeaders->Value("Content-length")));
}

void HTTPSocket::_ProcessData(const std::string& data) {
    if (_httpAction == "HEAD") return;
    _currentLength = WholeNumber(static_cast<double>(_currentLength) + static_cast<double>(data.size()));
    if (_downloadStream) {
        _downloadStream->Write(data);
        // What has arrived is to be on disk even if the rest never comes.
        _downloadStream->Flush();
    } else {
        _pageBuffer += data;
    }
    Raise(ReceiveProgress, _currentLength, _totalLength, data);
    // If the connection of a 401 ended while a handler ran the event loop, no further event ends the page.
    if (_httpStatusCode == 401 && !IsConnected()) _ProcessPage();
}

void HTTPSocket::_ProcessPage() {
    if (std::exchange(_pageComplete, true)) return;
    const bool downloaded = static_cast<bool>(_downloadStream);
    const Ref<FolderItem> file = _downloadFile;
    _KillDownloadStream();
    if (_httpAction == "HEAD") return;
    if (downloaded)
        Raise(DownloadComplete, _processingURL, _httpStatusCode, _pageHeaders, file);
    else
        Raise(PageReceived, _processingURL, _httpStatusCode, _pageHeaders, _pageBuffer);
}

bool HTTPSocket::_SetAuthentication() {
    std::string name;
    std::string password;
    const std::string asker = _processingURL;
    const bool again = !IsLetGo() && RunSlot(nullptr, AuthenticationRequired, _pageHeaders, name, password);
    // If the handler has started another request, the server of that one must not get these credentials.
    if (again && _processingURL == asker) _authenticationKey = "Basic " + EncodeBase64(name + ":" + password);
    return again;
}

}  // namespace varnith
