#include "http/HTTPSocket.h"
#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"

namespace varnith {

void HTTPSocket::_ParseURL(const std::string& url) {
    // Everything up to the first "://" is dropped, wherever it stands. So a URL without a scheme that holds
    // another URL is taken for that other URL.
    constexpr std::string_view SchemeMark = "://";
    const std::size_t mark = url.find(SchemeMark);
    const std::string rest = mark == url.npos ? url : url.substr(mark + SchemeMark.size());
    _server = NthField(rest, "/", 1);
    _path = rest.substr(_server.size());
    if (_path.empty()) _path = "/";
    Port = WholeNumber(Val(NthField(_server, ":", 2)));
    if (Port == 0) Port = DefaultPort;
    Address = NthField(_server, ":", 1);
}

// The servers rely on just this list. It escapes characters that need no escape, such as "-", and passes
// others that do, such as "?" and each byte from 128 up. The percent sign comes first: later it would escape
// the escapes of the other characters.
std::string HTTPSocket::_EncodeURLString(std::string text) {
    constexpr std::string_view Escaped = "%&=,/\\][{}`~-_()*^$#!+;<>\r\n";
    constexpr std::string_view Digits = "0123456789ABCDEF";
    for (const char c : Escaped) {
        const std::string escape = {'%', Digits[static_cast<std::size_t>(c) >> 4], Digits[c & 0xF]};
        text = ReplaceAll(text, std::string_view(&c, 1), escape);
        varnith::Yield();
    }
    return ReplaceAll(text, " ", "+");
}

std::string HTTPSocket::EncodeFormData(const Ref<Dictionary<std::string>>& form) const {
    std::string encoded;
    for (std::int32_t i = 0; i < form->Count(); ++i) {
        const std::string key = form->Key(i);
        if (i > 0) encoded += '&';
        encoded += _EncodeURLString(key) + "=" + _EncodeURLString(form->Value(key));
        varnith::Yield();
    }
    return encoded;
}

void HTTPSocket::SetFormData(const Ref<Dictionary<std::string>>& form) {
    if (form)
        SetPostContent(EncodeFormData(form), "application/x-www-form-urlencoded");
    else
        SetPostContent("", "");
}

void HTTPSocket::SetPostContent(const std::string& content, const std::string& content_type) {
    _postContent = content;
    _postContentType = content_type;
}

}  // namespace varnith
