#include <chrono>
#include <stdexcept>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include "http/support/HTTPTest.h"
#include "platform/base/Text.h"

namespace varnith::test {

namespace {

// nginx on a port of loopback, with a folder of its own. It ends with its object.
class Nginx {
  public:
    explicit Nginx(const TemporaryFolder& folder) {
        port_ = RawServer().Port();
        const std::string configuration = folder.File("nginx.conf", ReplaceAll(R"(
            daemon off; master_process off; pid PLACE/pid;
            events {}
            http {
                access_log off;
                client_body_temp_path PLACE/t; proxy_temp_path PLACE/t; fastcgi_temp_path PLACE/t;
                uwsgi_temp_path PLACE/t; scgi_temp_path PLACE/t;
                server {
                    listen 127.0.0.1:)" + std::to_string(port_) + R"(;
                    root PLACE/pages;
                    location /moved { return 301 /page.html; }
                }
            })",
                                                                               "PLACE", folder.Path()));
        const std::string errors = folder / "errors";
        const char* arguments[] = {"nginx", "-e", errors.c_str(), "-c", configuration.c_str(), nullptr};
        if (posix_spawn(&process_, "/usr/sbin/nginx", nullptr, nullptr, const_cast<char* const*>(arguments),
                        environ) != 0)
            throw std::runtime_error("nginx does not start");
    }
    ~Nginx() {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    std::string At(const std::string& path) const { return "http://127.0.0.1:" + Str(port_) + path; }

  private:
    std::int32_t port_;
    pid_t process_;
};

TEST_F(HTTPTest, TalksToARealServer) {
    const std::string large(3 << 20, 'x');
    folder.File("pages/page.html", "<p>A page</p>");
    folder.File("pages/large", large);
    const Nginx nginx(folder);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (client->HTTPStatusCode() == 0 && std::chrono::steady_clock::now() < limit)
        client->Get(nginx.At("/page.html"), 5);
    EXPECT_EQ(client->Get(nginx.At("/page.html"), 5), "<p>A page</p>");
    EXPECT_EQ(client->HTTPStatusCode(), 200);
    EXPECT_EQ(client->PageHeaders()->Value("content-type"), "text/html");
    EXPECT_EQ(client->GetHeaders(nginx.At("/large"), 5)->Value("Content-Length"), Str(std::ssize(large)));
    EXPECT_NE(client->Get(nginx.At("/missing"), 5).find("404 Not Found"), std::string::npos);
    EXPECT_EQ(client->HTTPStatusCode(), 404);
    client->Get(nginx.At("/moved"), 5);
    EXPECT_EQ(client->HTTPStatusCode(), 301);
    EXPECT_EQ(client->PageHeaders()->Value("Location"), nginx.At("/page.html"));

    std::int32_t received = 0;
    client->ReceiveProgress = [&](auto now, auto total, const auto& data) {
        EXPECT_EQ(total, std::ssize(large));
        received += static_cast<std::int32_t>(data.size());
        EXPECT_EQ(now, received);
    };
    bool complete = false;
    client->DownloadComplete = [&](const auto&, auto status, const auto&, const auto&) {
        complete = status == 200;
    };
    client->Get(nginx.At("/large"), FolderItem::FromPath(folder / "target"));
    PumpUntil([&] { return complete; });
    EXPECT_EQ(received, std::ssize(large));
    EXPECT_TRUE(BytesOf(folder / "target") == large);
}

}  // namespace

}  // namespace varnith::test
