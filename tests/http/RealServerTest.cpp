#include <stdexcept>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include "http/support/HTTPTest.h"
#include "platform/base/Text.h"

namespace varnith::test {

namespace {

// nginx on a port of loopback, with all that it needs below a folder. It ends with its object.
class Nginx {
  public:
    explicit Nginx(const TemporaryFolder& folder) : address_(RawServer().At("")) {
        folder.File("nginx.conf",
                    "daemon off; master_process off; pid pid; events {} http { access_log off;"
                    "client_body_temp_path t; proxy_temp_path t; fastcgi_temp_path t;"
                    "uwsgi_temp_path t; scgi_temp_path t;"
                    "server { listen " +
                        address_ +
                        "; root pages;"
                        "location /moved { return 301 /page.html; } } }");
        const std::string place = folder.Path();
        const char* arguments[] = {"nginx", "-p", place.c_str(), "-e", "errors", "-c", "nginx.conf", nullptr};
        if (posix_spawn(&process_, "/usr/sbin/nginx", nullptr, nullptr, const_cast<char* const*>(arguments),
                        environ) != 0)
            throw std::runtime_error("nginx does not start");
    }
    ~Nginx() {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    std::string At(const std::string& path) const { return "http://" + address_ + path; }

  private:
    const std::string address_;
    pid_t process_;
};

TEST_F(HTTPTest, TalksToARealServer) {
    const std::string large(3 << 20, 'x');
    folder.File("pages/page.html", "<p>A page</p>");
    folder.File("pages/large", large);
    const Nginx nginx(folder);
    PumpUntil([&] { return client->Get(nginx.At("/page.html"), 5) == "<p>A page</p>"; });
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
        received += static_cast<std::int32_t>(data.size());
        EXPECT_EQ(std::pair(now, total), std::pair(received, static_cast<std::int32_t>(large.size())));
    };
    std::int32_t complete = 0;
    client->DownloadComplete = [&](const auto&, auto status, const auto&, const auto&) { complete = status; };
    client->Get(nginx.At("/large"), FolderItem::FromPath(folder / "target"));
    PumpUntil([&] { return complete == 200; });
    EXPECT_EQ(received, std::ssize(large));
    EXPECT_TRUE(BytesOf(folder / "target") == large);
}

}  // namespace

}  // namespace varnith::test
