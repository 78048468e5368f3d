#pragma once

#include <cstdint>
#include <string>

#include "http/InternetHeaders.h"
#include "platform/base/Ref.h"

namespace varnith {

// What a caller of a web service needs of an HTTP client: it posts content, waits for the answer and learns
// of errors. HTTPSocket implements it and describes each operation.
class _SOAPSocket {
  public:
    virtual ~_SOAPSocket() = default;
    virtual void SetPostContent(const std::string& content, const std::string& content_type) = 0;
    virtual std::string Post(const std::string& url, std::int32_t timeout) = 0;
    virtual std::string Get(const std::string& url, std::int32_t timeout) = 0;
    virtual std::int32_t ErrorCode() const = 0;
    virtual Ref<InternetHeaders> GetRequestHeaders() const = 0;
};

}  // namespace varnith
