#include <cassert>

#include "helpers/TestDesktop.h"
#include "platform/base/InForce.h"
#include "support/SupportWindow.h"

// Whether the text has an address around the "@" at a place: at least a name's end, and a host with a dot.
static bool IsAddress(const std::string& text, std::size_t at) {
    static const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    const auto has = [&text](std::size_t i, const std::string& characters) {
        return i < text.size() && characters.find(text[i]) != characters.npos;
    };
    const std::size_t dot = text.find_first_not_of(letters + "-", at + 1);
    return at > 0 && has(at - 1, letters + "!#$%&'*+/=?^_`{|}~-") && has(at + 1, letters) &&
           has(dot - 1, letters) && has(dot, ".") && has(dot + 1, letters);
}

// The form takes a text that has an address in it, and no other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto window = varnith::MakeRef<varnith::SupportWindow>();
    const std::string text(reinterpret_cast<const char*>(data), size);
    varnith::test::TestDesktop desktop;
    const varnith::InForce<varnith::Desktop> in_force(desktop);
    window->EditField1.SetText(text);
    window->PushButton1_Action();
    bool has_address = false;
    for (std::size_t i = 0; i < size; ++i)
        has_address = has_address || (text[i] == '@' && IsAddress(text, i));
    const bool is_taken = desktop.messages.at(0) != text + " not valid email";
    // Letters beyond ASCII have other cases within it. Of a text of this length the search never gives up.
    const bool is_plain = size < 255 && text.find_first_of("\xC5\xE2") == text.npos;
    assert(is_taken == has_address || !is_plain);
    return 0;
}
