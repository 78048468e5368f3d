#include <cassert>

#include "http/HTTPSocket.h"

// The host ends at the first ":" or "/" after the scheme, and there is always a port.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string url(reinterpret_cast<const char*>(data), size);
    const auto client = varnith::MakeRef<varnith::HTTPSocket>();
    // A folder takes no page, so the request ends before it connects.
    client->Get(url, varnith::FolderItem::FromPath("/"));
    assert(client->ErrorCode() == varnith::HTTPSocket::FileNotWriteable);
    const std::size_t scheme = url.find("://");
    const std::string rest = url.substr(scheme == url.npos ? 0 : scheme + 3);
    assert(client->Address == rest.substr(0, rest.find_first_of(":/")));
    assert(client->Port != 0);
    return 0;
}
