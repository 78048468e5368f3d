#include "platform/qt/OtherWindows.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "platform/base/Trace.h"

namespace varnith {

namespace {

template <class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

// The windows of other programs, by the properties that the window manager and the programs set on the X
// server.
class Server {
  public:
    explicit Server(xcb_connection_t* connection)
        : connection_(connection), root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

    std::vector<std::uint32_t> AllWindows() const { return Numbers(root_, "_NET_CLIENT_LIST"); }

    bool Belongs(xcb_window_t window, std::int64_t process) const {
        const std::vector<std::uint32_t> owner = Numbers(window, "_NET_WM_PID");
        return owner.size() == 1 && owner.front() == process;
    }

    void Activate(xcb_window_t window) const {
        // The source indication of a pager. Window managers obey it as the user's own wish.
        constexpr std::uint32_t ByTheUser = 2;
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = Atom("_NET_ACTIVE_WINDOW");
        message.data.data32[0] = ByTheUser;
        xcb_send_event(connection_, 0, root_,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(connection_);
    }

  private:
    xcb_atom_t Atom(std::string_view name) const {
        const auto asked =
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, asked, nullptr),
                                                   std::free);
        if (!reply) TraceFailure("ask the X server for the atom", name, "no reply");
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    // The values of a property; none if the window has no such property, or is gone.
    std::vector<std::uint32_t> Numbers(xcb_window_t window, std::string_view property) const {
        constexpr std::uint32_t Most = 4096;
        const auto asked = xcb_get_property(connection_, 0, window, Atom(property), XCB_ATOM_ANY, 0, Most);
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, asked, nullptr),
                                                    std::free);
        if (!reply) TraceFailure("ask the X server for the property", property, "no reply");
        if (!reply || reply->format != 32) return {};
        const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {first, first + xcb_get_property_value_length(reply.get()) / 4};
    }

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

}  // namespace

void RaiseWindowsOf(std::int64_t process) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Qt's offscreen platform has the interface, but no connection.
    if (!x11 || !x11->connection())
        return TraceFailure("raise the windows of process", std::to_string(process), "this is not X11");
    const Server server(x11->connection());
    for (const std::uint32_t window : server.AllWindows())
        if (server.Belongs(window, process)) server.Activate(window);
}

}  // namespace varnith
