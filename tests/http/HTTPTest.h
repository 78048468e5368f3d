#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "helpers/RawServer.h"
#include "helpers/TemporaryFolder.h"
#include "helpers/WaitUntil.h"
#include "http/HTTPSocket.h"
#include "platform/base/Text.h"

namespace varnith::test {

using Lines = std::vector<std::string>;

// A client that notes down its events, a line an event with its arguments. It starts in an event loop that
// the test turns.
class RecordingSocket : public HTTPSocket {
  public:
    explicit RecordingSocket(Lines& events) : events_(events) {
        const auto note = [this](const std::string& name) {
            return [this, name](const auto&... arguments) {
                events_.push_back((name + ... + (" " + Shown(arguments))));
                if (Noted) Noted();
            };
        };
        Connected = note("Connected");
        HeadersReceived = note("HeadersReceived");
        ReceiveProgress = note("ReceiveProgress");
        PageReceived = note("PageReceived");
        DownloadComplete = note("DownloadComplete");
        Error = note("Error");
    }
    ~RecordingSocket() override { events_.push_back("gone"); }

    // Called behind each of them.
    std::function<void()> Noted;

  private:
    static std::string Shown(std::int32_t number) { return Str(number); }
    static std::string Shown(const std::string& text) { return text; }
    static std::string Shown(const Ref<FolderItem>& file) { return BytesOf(file->AbsolutePath()); }
    static std::string Shown(const Ref<InternetHeaders>& headers) {
        return headers ? "[" + ReplaceAll(headers->_FormatHTTPHeaders(), "\r\n", "|") + "]" : "nil";
    }

    Lines& events_;
};

class HTTPTest : public testing::Test {
  protected:
    // Has the client's request come to the server; returns its bytes.
    std::string TakeRequest() {
        auto request = std::async(std::launch::async, [&] { return server.TakeRequest(); });
        ServeUntil([&] { return request.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return request.get();
    }

    // Sends a piece, or ends the connection, and has the client notice.
    void Answer(const std::string& piece) {
        const std::size_t before = Noticed();
        server.Send(piece);
        ServeUntil([&] { return Noticed() != before; });
    }
    void AnswerAndClose(const std::string& piece) {
        if (!piece.empty()) Answer(piece);
        server.Close();
        ServeUntil([&] { return !client->IsConnected(); });
    }

    // Has a server's work done beside the client, which waits for it in one call: any, or the answer to one
    // request.
    void Beside(const std::function<void()>& work) {
        beside_ = {};
        beside_ = std::async(std::launch::async, work);
    }
    void ServeBeside(const std::string& method, const std::string& answer) {
        Beside([this, method, answer] {
            EXPECT_EQ(server.TakeRequest().substr(0, method.size()), method);
            server.Send(answer);
            server.Close();
        });
    }

    // The request for a plain page.
    static std::string PlainRequest(const std::string& path, const std::string& host) {
        return "GET " + path + " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " + host +
               "\r\n\r\n";
    }

    Lines events;
    RawServer server;
    TemporaryFolder folder;
    Ref<RecordingSocket> client = MakeRef<RecordingSocket>(events);

  private:
    // What is unread, or has become an event.
    std::size_t Noticed() const { return events.size() + client->Lookahead().size(); }

    std::future<void> beside_;
};

}  // namespace varnith::test
