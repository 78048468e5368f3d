#include <cstdlib>

#include "http/support/HTTPTest.h"
#include "platform/base/Text.h"

namespace varnith::test {

// nginx, with all that it needs below a folder. It ends with its object.
struct Nginx {
    Nginx(const TemporaryFolder& folder, const std::string& address)
        : command("/usr/sbin/nginx -e errors -c nginx.conf -p " + folder.Path()) {
        folder.File("nginx.conf",
                    "pid pid; master_process off; events {} http { access_log off;"
                    "client_body_temp_path t; proxy_temp_path t; fastcgi_temp_path t;"
                    "uwsgi_temp_path t; scgi_temp_path t; server { listen " +
                        address + "; root pages; location /moved { return 301 /page.html; } } }");
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
    ~Nginx() { EXPECT_EQ(std::system((command + " -s stop").c_str()), 0); }

    const std::string command;
};

TEST_F(HTTPTest, TalksToARealServer) {
    const std::string large(3 << 20, 'x');
    folder.File("pages/page.html", "<p>A page</p>");
    folder.File("pages/large", large);
    const std::string address = RawServer().At("");
    const Nginx nginx(folder, address);
    const auto at = [&](const char* path) { return "http://" + address + path; };
    EXPECT_EQ(client->Get(at("/page.html"), 5), "<p>A page</p>");
    EXPECT_EQ(client->HTTPStatusCode(), 200);
    EXPECT_EQ(client->PageHeaders()->Value("content-type"), "text/html");
    EXPECT_EQ(client->GetHeaders(at("/large"), 5)->Value("Content-Length"), Str(std::ssize(large)));
    EXPECT_NE(client->Get(at("/missing"), 5).find("404 Not Found"), std::string::npos);
    EXPECT_EQ(client->HTTPStatusCode(), 404);
    client->Get(at("/moved"), 5);
    EXPECT_EQ(client->HTTPStatusCode(), 301);
    EXPECT_EQ(client->PageHeaders()->Value("Location"), at("/page.html"));

    std::int32_t received = 0;
    client->ReceiveProgress = [&](auto now, auto total, const auto& data) {
        received += static_cast<std::int32_t>(data.size());
        EXPECT_EQ(std::pair(now, total), std::pair(received, static_cast<std::int32_t>(large.size())));
    };
    std::int32_t complete = 0;
    client->DownloadComplete = [&](const auto&, auto status, const auto&, const auto&) { complete = status; };
    client->Get(at("/large"), FolderItem::FromPath(folder / "target"));
    PumpUntil([&] { return complete == 200; });
    EXPECT_EQ(received, std::ssize(large));
    EXPECT_TRUE(BytesOf(folder / "target") == large);
}

}  // namespace varnith::test
