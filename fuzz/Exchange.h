#pragma once

#include <functional>
#include <string>
#include <utility>

#include "helpers/RawServer.h"
#include "http/HTTPSocket.h"

namespace varnith {

// A client's request to a server on loopback, what the server sends, and what the client tells of it.
class Exchange {
  public:
    // Requests a page. `repeats` is asked whether to answer a demand for a password by a second request.
    explicit Exchange(std::function<bool()> repeats) : repeats_(std::move(repeats)) {
        client_->Connected = [this] { head = body = ""; };
        client_->AuthenticationRequired = [this](auto, auto&, auto&) {
            if (!repeats_()) return false;
            has_begun_ = false;
            return true;
        };
        client_->HeadersReceived = [this](auto headers, auto) { head += "<" + headers->Source(); };
        client_->ReceiveProgress = [this](auto, auto, const auto& piece) { body += piece; };
        client_->PageReceived = [this](auto, auto, auto, const auto& page) { pages += "<" + page; };
        Begin();
    }

    // Requests the page again, whatever has come of the request before.
    void Begin() {
        has_begun_ = false;
        client_->Get(server.At("/"));
    }
    // Whether the server has the request.
    bool HasBegun() const { return has_begun_; }

    // Sends a piece of the answer after the request has come.
    void Send(const std::string& piece) {
        while (!has_begun_) client_->Poll();
        sent += piece;
        if (server.Send(piece) && !piece.empty()) client_->Poll();
    }

    // Closes the connection and lets the client take what has come.
    void End(bool is_reset) {
        is_reset ? server.Reset() : server.Close();
        while (client_->IsConnected()) client_->Poll();
    }

    std::string sent;  // in answer to the last request
    std::string head;  // each with "<" before it
    std::string body;
    std::string pages;  // each with "<" before it

  private:
    struct Client : HTTPSocket {
        explicit Client(Exchange& exchange) : owner(exchange) {}
        void Event_SendComplete() override {
            owner.server.TakeRequest();
            owner.sent = "";
            owner.has_begun_ = true;
        }
        Exchange& owner;
    };

    static inline test::RawServer server;
    const std::function<bool()> repeats_;
    bool has_begun_ = false;
    Ref<Client> client_ = MakeRef<Client>(*this);
};

}  // namespace varnith
