#include <string_view>
#include <utility>

#include "http/HTTPSocket.h"
#include "platform/base/Base64.h"
#include "platform/base/Event.h"
#include "platform/base/Text.h"

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

// The end of a connection that stood is the end of the page. But bytes that are unread at this moment, as
// those of a head that never ended, are only taken in, and such a page stays unfinished for good. The mark
// of a standing connection outlives a new Connect, so a request made over one that stood and that can't
// connect ends as an empty page, not as a failure: its users hear of one end in either case.
void HTTPSocket::Event_Error() {
    if (!std::exchange(_connectionValid, false))
        SetError(LastErrorCode());
    else if (Lookahead().empty())
        _ProcessPage();
    else
        _HandleNewData();
}

void HTTPSocket::_HandleNewData() {
    // A handler further down runs the event loop; the bytes wait for the next time.
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

// Two line ends in a row, sought first with the line end that the unread bytes have, then with each of the
// others. As the bytes count as ending their lines in pairs if there is one anywhere, and in line feeds if
// there is one of those, that comes to this order.
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
        // What has come is on disk, whatever becomes of the rest.
        _downloadStream->Flush();
    } else {
        _pageBuffer += data;
    }
    Raise(ReceiveProgress, _currentLength, _totalLength, data);
    // A refusal whose connection ended while a handler ran the event loop has no further event to end it.
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
    // Not for whom the handler has meanwhile started another request to. In one line, however long they are:
    // a line break would end the header in its middle.
    if (again && _processingURL == asker) _authenticationKey = "Basic " + EncodeBase64(name + ":" + password);
    return again;
}

}  // namespace varnith
