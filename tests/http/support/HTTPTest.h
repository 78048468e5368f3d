#pragma once

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "http/HTTPSocket.h"
#include "http/support/RawServer.h"
#include "support/TemporaryFolder.h"

namespace varnith::test {

using Lines = std::vector<std::string>;

// A client that notes down its events, a line an event with its arguments, and counts what comes in from
// below. It starts in an event loop that the test turns.
class RecordingSocket : public HTTPSocket {
  public:
    explicit RecordingSocket(Lines& events);
    ~RecordingSocket() override { events_.push_back("gone"); }

    int sendings = 0;  // completed ones
    int arrivals = 0;  // of pieces
    int ends = 0;      // of connections and attempts at one

  protected:
    void Event_DataAvailable() override;
    void Event_SendComplete() override { ++sendings; }
    void Event_Error() override;

  private:
    Lines& events_;
};

class HTTPTest : public testing::Test {
  protected:
    // Turns the event loop until the condition holds; fails the test when that takes too long.
    static void PumpUntil(const std::function<bool()>& condition);

    // Has the client's request come to the server; returns its bytes.
    std::string TakeRequest();
    // Sends each piece once the client has taken the one before.
    void Answer(const Lines& pieces);
    void PumpUntilEnd();
    // The rest of a whole exchange: the answer, and the end of the connection.
    void AnswerAndClose(const Lines& pieces);

    // Has a server's work done beside the client, which waits for it in one call: any, or the answer to one
    // request by a method.
    void Beside(const std::function<void()>& work) { worker_ = std::jthread(work); }
    void ServeOnce(const std::string& answer, const std::string& method = "GET");

    Lines events;
    RawServer server;
    TemporaryFolder folder;
    Ref<RecordingSocket> client = MakeRef<RecordingSocket>(events);

  private:
    std::jthread worker_;
};

// The processor time that this thread has used so far.
double ProcessorSeconds();

// The request for a plain page.
std::string PlainRequest(const std::string& method, const std::string& path, const std::string& host);

}  // namespace varnith::test
