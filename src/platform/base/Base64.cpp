#include "platform/base/Base64.h"

#include <memory>

#include <glib.h>

namespace varnith {

std::string EncodeBase64(std::string_view bytes) {
    const std::unique_ptr<gchar, void (*)(gpointer)> encoded(
        g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()), g_free);
    return encoded.get();
}

}  // namespace varnith
