#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "http/InternetHeaders.h"
#include "http/SOAPSocket.h"
#include "platform/base/Dictionary.h"
#include "platform/base/Ref.h"
#include "platform/files/FolderItem.h"
#include "platform/net/TCPSocket.h"

namespace varnith {

// A small HTTP/1.0 client (RFC 1945). It makes one request at a time over a plain TCP connection. The end of
// the connection is the end of the page. It follows no redirects, decodes no bodies, and doesn't compare the
// length received with the length announced. Every status but 401 is a page like any other. One object can
// make any number of requests; a new request drops the one under way.
//
// A URL consists of an optional scheme, which is ignored, the host, an optional ":" and port, and the path
// from the first "/" on. Nothing in it is escaped.
//
// A request without a time-out returns at once and reports through the events below. A request with a
// time-out, in seconds, waits and returns the result. The time-out starts again when the connection is made
// or ends and whenever the body grows; below 1 there is none. A body that goes into a file does not count as
// growing, so a download has to be complete within the time-out after the connection is made. While a request
// waits, the program's threads run, and if `Yield` is set the event loop too.
class HTTPSocket : public TCPSocket, public _SOAPSocket {
  public:
    HTTPSocket();

    // The headers of the next request. They are kept for the requests after it. If this is nil, the next
    // request or SetRequestHeader creates the default headers.
    Ref<InternetHeaders> requestHeaders;
    // The port if the URL gives none.
    std::int32_t DefaultPort = 80;
    // The proxy to send requests to. An empty address means no proxy, port 0 means DefaultPort.
    std::string HTTPProxyAddress;
    std::int32_t HTTPProxyPort = 0;
    // Whether a request with a time-out runs the application's event loop while it waits.
    bool Yield = false;

    // The events. Each slot may be empty. A request with a time-out raises AuthenticationRequired only. An
    // object to which no Ref is left raises none. An exception that leaves a handler goes to the handler of
    // unhandled exceptions (platform/base/Guard.h).

    // The connection is made. The request is sent after this event.
    std::function<void()> Connected;
    // The head of the response has arrived: its headers, which the handler may keep, and its status code.
    std::function<void(Ref<InternetHeaders>, std::int32_t)> HeadersReceived;
    // A piece of the body has arrived: the number of bytes of the body so far, the length announced (0 if
    // none was), and the piece. Raised at least once after each head, with an empty piece if no body came
    // along. Not raised by GetHeaders.
    std::function<void(std::int32_t, std::int32_t, const std::string&)> ReceiveProgress;
    // The page is complete: its URL, status code, headers and body. If the connection ended without a byte,
    // the headers are nil and the status is 0. Not raised by GetHeaders.
    std::function<void(std::string, std::int32_t, Ref<InternetHeaders>, std::string)> PageReceived;
    // The same for a page that went into a file. The file is closed.
    std::function<void(std::string, std::int32_t, Ref<InternetHeaders>, Ref<FolderItem>)> DownloadComplete;
    // The request has failed, with the code that ErrorCode returns.
    std::function<void(std::int32_t)> Error;
    // The server has answered with status 401 and these headers. To send the request again with a name and a
    // password, the handler fills them in and returns true. There is no limit to the number of retries.
    std::function<bool(Ref<InternetHeaders>, std::string&, std::string&)> AuthenticationRequired;

    // Start a request and return. If a file is given it is emptied, and the body goes into it; if it can't be
    // written the request fails with FileNotWriteable. A nil file counts as none.
    void Get(const std::string& url);
    void Get(const std::string& url, const Ref<FolderItem>& file);
    void Post(const std::string& url);
    void Post(const std::string& url, const Ref<FolderItem>& file);
    void GetHeaders(const std::string& url);

    // Make a request and wait until it has ended, failed or timed out. Without a file they return the body;
    // after a failure that may be the body of an earlier request. With a file they return whether ErrorCode
    // is 0; if the file can't be written they wait for the time-out. GetHeaders returns the headers, nil if
    // none came.
    std::string Get(const std::string& url, std::int32_t timeout) override;
    std::string Post(const std::string& url, std::int32_t timeout) override;
    bool Get(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout);
    bool Post(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout);
    Ref<InternetHeaders> GetHeaders(const std::string& url, std::int32_t timeout);

    // Sets a header of the next requests. An empty value removes all headers of that name.
    void SetRequestHeader(const std::string& name, const std::string& value);
    // Removes all headers of the next requests, including the two default ones. Raises NilObjectException if
    // requestHeaders is nil.
    void ClearRequestHeaders();
    Ref<InternetHeaders> GetRequestHeaders() const override { return requestHeaders; }

    // The headers of the response, nil if it has none.
    Ref<InternetHeaders> PageHeaders() const;
    // The status code of the response, 0 before its head has arrived.
    std::int32_t HTTPStatusCode() const { return _httpStatusCode; }

    static constexpr std::int32_t FileNotWriteable = 1;
    static constexpr std::int32_t TimedOut = -1;
    // The error of the last request: 0 for none, one of the two above, or a code of SocketCore if no
    // connection was made. A status such as 404 is no error, nor is a connection that ends early. A request
    // that drops a standing connection and can't make its own ends as an empty page, not with an error.
    std::int32_t ErrorCode() const override { return mErrorCode; }
    // Sets ErrorCode and raises Error with it.
    void SetError(std::int32_t code);

    // Sets the body of the next POST requests and its media type. Both stay until they are set again. Any
    // other request clears them.
    void SetPostContent(const std::string& content, const std::string& content_type) override;
    // Sets the body and the type from a form's names and values. Nil clears them.
    virtual void SetFormData(const Ref<Dictionary<std::string>>& form);
    // A form as a body or a query: "key=value" pairs joined by "&", in the order of the dictionary. Keys and
    // values are escaped. Raises NilObjectException for nil.
    virtual std::string EncodeFormData(const Ref<Dictionary<std::string>>& form) const;

    // Waits until the request has ended, failed or timed out. The requests with a time-out call it.
    void WaitForPage();

  protected:
    void Event_Connected() override;
    void Event_DataAvailable() override;
    void Event_Error() override;

  private:
    struct HeadEnd {
        std::size_t head;  // bytes of the head, without its last line end
        std::size_t gap;   // bytes of the two line ends after it
    };

    void Start(const std::string& url, const std::string& method, const Ref<FolderItem>& file);
    void StartAndWait(const std::string& url, const std::string& method, const Ref<FolderItem>& file,
                      std::int32_t timeout);
    void _DoConnect(std::string url, std::string method, Ref<FolderItem> file);
    bool _SetDownloadFile(Ref<FolderItem> file);
    void _KillDownloadStream();
    void _ParseURL(const std::string& url);
    static std::string _EncodeURLString(std::string text);

    void _ResetVariables();
    void _SendRequest(const std::string& method);
    void PrepareRequestHeaders(const std::string& method);
    void EnsureRequestHeaders();

    void _HandleNewData();
    std::optional<HeadEnd> FindHeadEnd();
    void HandleHead(const HeadEnd& end);
    void _ParseHeaders(const std::string& head);
    void _ProcessData(const std::string& data);
    void _ProcessPage();
    bool _SetAuthentication();

    template <class... Parameters, class... Arguments>
    void Raise(const std::function<void(Parameters...)>& event, const Arguments&... arguments);

    Ref<InternetHeaders> _pageHeaders;
    std::string _server;
    std::string _path;
    std::int32_t _totalLength = 0;
    Ref<BinaryStream> _downloadStream;
    Ref<FolderItem> _downloadFile;
    std::string _pageBuffer;
    std::int32_t _currentLength = 0;
    bool _pageComplete = false;
    std::string _postContent;
    std::string _postContentType;
    std::string _httpAction;
    std::string _processingURL;
    bool _connectionValid = false;
    std::int32_t _httpStatusCode = 0;
    std::string _authenticationKey;
    bool synchronous = false;
    std::int32_t timeoutSeconds = 0;
    std::int32_t mErrorCode = 0;
    bool threadProtection = false;

    // The number of unread bytes that were searched for the end of the head without success. They are not
    // searched again.
    std::size_t searched_length_ = 0;
};

}  // namespace varnith
