#include <cassert>

#include <fuzzer/FuzzedDataProvider.h>

#include "helpers/RawServer.h"
#include "http/HTTPSocket.h"

static varnith::test::RawServer server;

struct Client : varnith::HTTPSocket {
    void Event_SendComplete() override { server.TakeRequest(), sent = ""; }
    std::optional<std::string> sent;  // the answer so far; nothing before the request has come
};

// In whatever pieces an answer comes and however its connection ends, the client tells all of it: the head,
// the body, and once the end. Part of a head has no end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool is_reset = input.ConsumeBool();
    const auto client = varnith::MakeRef<Client>();
    std::string head, body, pages;
    client->Connected = [&] { head = body = ""; };
    client->AuthenticationRequired = [&](auto, auto&, auto&) {
        if (input.ConsumeBool()) client->sent.reset();
        return !client->sent;
    };
    client->HeadersReceived = [&](auto headers, auto) { head += "<" + headers->Source(); };
    client->ReceiveProgress = [&](auto, auto, const auto& piece) { body += piece; };
    client->PageReceived = [&](auto, auto, auto, const auto& page) { pages += "<" + page; };
    client->Get(server.At("/"));
    do {
        while (!client->sent) client->Poll();
        const std::string piece = input.ConsumeRandomLengthString();
        *client->sent += piece;
        if (server.Send(piece) && !piece.empty()) client->Poll();
        if (input.ConsumeIntegralInRange(0, 15) == 15) client->sent.reset(), client->Get(server.At("/"));
    } while (input.remaining_bytes() > 0 || !client->sent);
    is_reset ? server.Reset() : server.Close();
    while (client->IsConnected()) client->Poll();

    bool has_gap = false, is_told = false;
    for (const std::string gap : {"\r\n\r\n", "\n\n", "\r\r"}) {
        has_gap = has_gap || client->sent->find(gap) != std::string::npos;
        is_told = is_told || ("<" + *client->sent == head + gap + body && pages == "<" + body);
    }
    assert(has_gap ? is_told : head.empty() && pages == (client->sent->empty() ? "<" : ""));
    return 0;
}
