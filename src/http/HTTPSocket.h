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

// A small HTTP/1.0 client (RFC 1945): one request at a time over one plain connection, whose end is the end
// of the page. It follows no redirect, decodes nothing and never compares the length received with the one
// announced; each status but 401 is a page like any other. One object serves any number of requests; one
// that is started during another drops that.
//
// A URL is taken as it stands, with any scheme or none: host, maybe ":" and a port, and all from the first
// "/" on as the path. Nothing in it is escaped.
//
// A request either reports through the events below and returns at once, or, given a time-out in seconds,
// waits and returns the result. The time-out limits how long nothing moves, not the whole; below 1 there is
// no limit. What goes into a file does not count as moving, so there it limits the whole from the connection
// on. While it waits, the program's threads run on, and with `Yield` the windows too.
class HTTPSocket : public TCPSocket, public _SOAPSocket {
  public:
    HTTPSocket();

    // The headers of the next request, kept from request to request. Nil is made anew by the next use.
    Ref<InternetHeaders> requestHeaders;
    // The port for a URL that gives none.
    std::int32_t DefaultPort = 80;
    // The proxy to send requests to; none if the address is empty. Port 0 means DefaultPort.
    std::string HTTPProxyAddress;
    std::int32_t HTTPProxyPort = 0;
    // Whether waiting runs the application's event loop.
    bool Yield = false;

    // The events. Each slot may be empty. All but AuthenticationRequired are withheld while a request is
    // waited for, and from an object that nobody holds any more. An exception in a handler ends the handler.

    // The connection stands; the request goes out next.
    std::function<void()> Connected;
    // The head of the response has been parsed, with its status code. The block may be kept.
    std::function<void(Ref<InternetHeaders>, std::int32_t)> HeadersReceived;
    // A piece of the body: the bytes received so far, the length announced (0 for none), the piece. Comes at
    // least once, maybe with an empty piece, behind each head.
    std::function<void(std::int32_t, std::int32_t, const std::string&)> ReceiveProgress;
    // The page has ended: its URL, status code, headers and body. Headers are nil and the status 0 if the
    // connection ended without a byte. Does not come for GetHeaders.
    std::function<void(std::string, std::int32_t, Ref<InternetHeaders>, std::string)> PageReceived;
    // The same for a page that went into a file, with the file, closed by then.
    std::function<void(std::string, std::int32_t, Ref<InternetHeaders>, Ref<FolderItem>)> DownloadComplete;
    // The request has failed, with its code; see ErrorCode.
    std::function<void(std::int32_t)> Error;
    // Status 401: fills in a name and a password and returns true to have the request sent again with them,
    // as often as that is asked for. Given the headers.
    std::function<bool(Ref<InternetHeaders>, std::string&, std::string&)> AuthenticationRequired;

    // Start a request. The body goes into the file if one is given, which is emptied first.
    void Get(const std::string& url);
    void Get(const std::string& url, const Ref<FolderItem>& file);
    void Post(const std::string& url);
    void Post(const std::string& url, const Ref<FolderItem>& file);
    void GetHeaders(const std::string& url);

    // Make a request and wait for it. The result is the body, which after a failure may be that of the
    // request before; whether ErrorCode is 0; or the headers, nil if none came.
    std::string Get(const std::string& url, std::int32_t timeout) override;
    std::string Post(const std::string& url, std::int32_t timeout) override;
    bool Get(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout);
    bool Post(const std::string& url, const Ref<FolderItem>& file, std::int32_t timeout);
    Ref<InternetHeaders> GetHeaders(const std::string& url, std::int32_t timeout);

    // Sets a header of the next requests; an empty value removes all of the name.
    void SetRequestHeader(const std::string& name, const std::string& value);
    // Removes all headers of the next requests, the two that are there from the start too.
    void ClearRequestHeaders();
    Ref<InternetHeaders> GetRequestHeaders() const override { return requestHeaders; }

    // The headers of the response; nil if it has none.
    Ref<InternetHeaders> PageHeaders() const;
    // The status code of the response, 0 before its head has come.
    std::int32_t HTTPStatusCode() const { return _httpStatusCode; }

    static constexpr std::int32_t FileNotWriteable = 1;
    static constexpr std::int32_t TimedOut = -1;
    // What went wrong: 0 for nothing, one of these two, or the socket's own code if the connection was not
    // made and none had stood before. HTTP's own failures are no errors.
    std::int32_t ErrorCode() const override { return mErrorCode; }
    // Stores the code and raises Error with it.
    void SetError(std::int32_t code);

    // Sets the body of the next posts and its type. Both stay until they are set again, or until a request
    // that is no post clears them.
    void SetPostContent(const std::string& content, const std::string& content_type) override;
    // Sets them from a form; nil clears them.
    virtual void SetFormData(const Ref<Dictionary<std::string>>& form);
    // The form as a body or a query: "key=value" joined by "&", in the order of the map, both escaped.
    virtual std::string EncodeFormData(const Ref<Dictionary<std::string>>& form) const;

    // Waits until the page has ended or failed. Part of the requests with a time-out.
    void WaitForPage();

  protected:
    void Event_Connected() override;
    void Event_DataAvailable() override;
    void Event_Error() override;

  private:
    struct HeadEnd {
        std::size_t head;  // bytes of the head, without the end of its last line
        std::size_t gap;   // bytes of the two line ends behind it
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

    // The unread bytes in which no end of the head was found, so that they are not searched again.
    std::size_t searched_length_ = 0;
};

}  // namespace varnith
