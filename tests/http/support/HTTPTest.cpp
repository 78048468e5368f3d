#include "http/support/HTTPTest.h"

#include <chrono>

#include <poll.h>
#include <time.h>

#include "platform/base/Text.h"
#include "platform/net/SocketEvents.h"

namespace varnith::test {

namespace {

std::string Shown(std::int32_t status, const Ref<InternetHeaders>& headers) {
    const std::string block = headers ? ReplaceAll(headers->_FormatHTTPHeaders(), "\r\n", "|") : "nil";
    return std::to_string(status) + " [" + block + "]";
}

}  // namespace

RecordingSocket::RecordingSocket(Lines& events) : events_(events) {
    Connected = [this] { events_.push_back("Connected"); };
    HeadersReceived = [this](const auto& headers, auto status) {
        events_.push_back("HeadersReceived " + Shown(status, headers));
    };
    ReceiveProgress = [this](auto received, auto total, const auto& data) {
        events_.push_back("ReceiveProgress " + Str(received) + "/" + Str(total) + " " + data);
    };
    PageReceived = [this](const auto& url, auto status, const auto& headers, const auto& body) {
        events_.push_back("PageReceived " + url + " " + Shown(status, headers) + " " + body);
    };
    DownloadComplete = [this](const auto& url, auto status, const auto& headers, const auto& file) {
        events_.push_back("DownloadComplete " + url + " " + Shown(status, headers) + " " + file->Name() +
                          " " + BytesOf(file->AbsolutePath()));
    };
    Error = [this](auto code) { events_.push_back("Error " + Str(code)); };
}

void RecordingSocket::Event_DataAvailable() {
    ++arrivals;
    HTTPSocket::Event_DataAvailable();
}

void RecordingSocket::Event_Error() {
    ++ends;
    HTTPSocket::Event_Error();
}

void HTTPTest::PumpUntil(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        ASSERT_LT(std::chrono::steady_clock::now(), limit) << "what was waited for does not come";
        pollfd watched{SocketEvents::Current()->Descriptor(), POLLIN, 0};
        poll(&watched, 1, 1000);
        SocketEvents::Current()->Serve();
    }
}

std::string HTTPTest::TakeRequest() {
    const int before = client->sendings;
    PumpUntil([&] { return client->sendings > before; });
    return server.TakeRequest();
}

void HTTPTest::Answer(const Lines& pieces) {
    for (const std::string& piece : pieces) {
        const int before = client->arrivals;
        server.Send(piece);
        PumpUntil([&] { return client->arrivals > before; });
    }
}

void HTTPTest::PumpUntilEnd() {
    const int before = client->ends;
    PumpUntil([&] { return client->ends > before; });
}

void HTTPTest::AnswerAndClose(const Lines& pieces) {
    Answer(pieces);
    server.Close();
    PumpUntilEnd();
}

void HTTPTest::ServeOnce(const std::string& answer, const std::string& method) {
    Beside([this, answer, method] {
        EXPECT_EQ(server.TakeRequest().substr(0, method.size()), method);
        server.Send(answer);
        server.Close();
    });
}

double ProcessorSeconds() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

std::string PlainRequest(const std::string& method, const std::string& path, const std::string& host) {
    return method + " " + path + " HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " + host +
           "\r\n\r\n";
}

}  // namespace varnith::test
