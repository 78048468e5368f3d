#include "http/HTTPSocket.h"
#include "platform/base/Text.h"

namespace varnith {

void HTTPSocket::EnsureRequestHeaders() {
    if (requestHeaders) return;
    requestHeaders = MakeRef<InternetHeaders>();
    requestHeaders->SetHeader("Accept", "*/*");
    requestHeaders->SetHeader("Accept-Language", "en");
}

void HTTPSocket::SetRequestHeader(const std::string& name, const std::string& value) {
    EnsureRequestHeaders();
    if (value.empty())
        requestHeaders->Delete(name);
    else
        requestHeaders->SetHeader(name, value);
}

void HTTPSocket::ClearRequestHeaders() {
    requestHeaders->DeleteAllHeaders();
}

void HTTPSocket::_SendRequest(const std::string& method) {
    PrepareRequestHeaders(method);
    if (!HTTPProxyAddress.empty()) _path = _processingURL;
    const std::string request = method + " " + _path + " HTTP/1.0\r\n" +
                                requestHeaders->_FormatHTTPHeaders() + "\r\n\r\n" + _postContent;
    // The credentials are for this request only.
    if (!_authenticationKey.empty()) {
        requestHeaders->Delete("Authorization");
        _authenticationKey.clear();
    }
    Write(request);
}

void HTTPSocket::PrepareRequestHeaders(const std::string& method) {
    EnsureRequestHeaders();
    requestHeaders->SetHeader("Host", _server);
    if (!_authenticationKey.empty()) SetRequestHeader("Authorization", _authenticationKey);
    if (method == "POST") {
        requestHeaders->SetHeader("Content-type", _postContentType);
        requestHeaders->SetHeader("Content-length", Str(static_cast<std::int64_t>(_postContent.size())));
    } else {
        SetPostContent("", "");
        requestHeaders->Delete("Content-type");
        requestHeaders->Delete("Content-length");
    }
}

}  // namespace varnith
