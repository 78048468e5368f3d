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

// A client that records its events, one a line with their arguments. The test runs the event loop that the
// client starts in.
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

    // Called after each event.
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
    // Waits until the client's request has reached the server; returns its bytes.
    std::string TakeRequest() {
        auto request = std::async(std::launch::async, [&] { return server.TakeRequest(); });
        ServeUntil([&] { return request.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return request.get();
    }

    // Send a piece, or close the connection, and wait until the client has noticed.
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

    // Run the server in another thread while the client blocks in a call: with any work, or to answer one
    // request.
    void Beside(const std::function<void()>& work) {
        beside_ = {};
        beside_ = std::async(std::launch::async, work);
    }
    // Waits for the end of that work, which may use what is going to be destroyed.
    void EndBeside() { beside_ = {}; }
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
    // The unread bytes plus the recorded events.
    std::size_t Noticed() const { return events.size() + client->Lookahead().size(); }

    std::future<void> beside_;
};

}  // namespace varnith::test
