#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "Random.h"
#include "helpers/MakersServer.h"

namespace varnith::test {

// Answers like the maker's servers, late and not always well, for as long as it lives.
class Makers {
  public:
    explicit Makers(std::uint32_t seed) : random_(seed) {}
    Makers(const Makers&) = delete;
    Makers& operator=(const Makers&) = delete;
    ~Makers() {
        ended_ = true;
        thread_.join();
    }

    // Whether the program's check for a newer version has its answer.
    bool HaveAnsweredCheck() const { return has_answered_check_; }

  private:
    void Serve() {
        RawServer& server = MakersServer();
        while (!ended_) {
            std::this_thread::sleep_for(std::chrono::microseconds(random_.Below(2000)));
            if (!server.HasVisitor()) continue;
            const bool is_check = server.TakeRequest().find("/updates/") != std::string::npos;
            server.Send(is_check ? Update() : Page(""));
            random_.OneIn(4) ? server.Reset() : server.Close();
            if (is_check) has_answered_check_ = true;
        }
    }
    std::string Update() {
        const std::string pages[] = {Page("version=9\ndownload-mac=http://127.0.0.1:70000/new.tar"),
                                     Page("version=9"),
                                     Page("version=1.2.3"),
                                     Page("<h1>404</h1>"),
                                     "HTTP/1.1 200 OK\r\nCont",
                                     ""};
        return random_.Of(pages);
    }
    static std::string Page(const std::string& body) { return "HTTP/1.1 200 OK\r\n\r\n" + body; }

    Random random_;
    std::atomic<bool> ended_ = false;
    std::atomic<bool> has_answered_check_ = false;
    std::thread thread_{[this] { Serve(); }};
};

}  // namespace varnith::test
