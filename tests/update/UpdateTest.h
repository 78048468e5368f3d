#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <string>

#include <unistd.h>

#include "helpers/MakersServer.h"
#include "helpers/ProgramTest.h"
#include "platform/ui/Application.h"
#include "update/AutoUpdateWindow.h"

namespace varnith::test {

class UpdateTest : public ProgramTest {
  protected:
    void Start(const std::function<void()>& user) { EXPECT_EQ(ProgramTest::Start(user), 0); }

    // Answers a request with each page, which includes its headers. If `resets`, the page is incomplete and
    // a reset of the connection follows it.
    void Serve(const Lines& pages, bool resets = false) {
        served_ = std::async(std::launch::async, [pages, resets] {
            for (const std::string& page : pages) {
                MakersServer().TakeRequest();
                MakersServer().Send(page);
                resets ? MakersServer().Reset() : MakersServer().Close();
            }
        });
    }
    bool HasServed() const { return served_.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
    static std::string Page(const std::string& body, const std::string& status = "200 OK") {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
               body;
    }
    // The page of a data file that offers a newer version as a download of that name.
    static std::string Newer(const std::string& name) {
        return Page("version=1.2.4\ndownload-mac=http://" + MakersServer().At("/new/" + name));
    }

    // The window of the offer; nil unless it is the front window.
    static Ref<AutoUpdateWindow> Offer() {
        return Ref<AutoUpdateWindow>::As(Application::Current().FrontWindow());
    }

    // The program's temporary folder.
    const std::string temporary = home / ("varnith-" + std::to_string(geteuid()));

  private:
    std::future<void> served_;
};

}  // namespace varnith::test
