#include <cstdio>

#include "http/support/HTTPTest.h"
#include "platform/base/Text.h"

namespace varnith::test {

TEST(Escaping, TakesTheListedCharactersAndNoOthers) {
    const auto socket = MakeRef<HTTPSocket>();
    const auto form = MakeRef<Dictionary<std::string>>();
    EXPECT_EQ(socket->EncodeFormData(form), "");
    EXPECT_THROW(socket->EncodeFormData(nullptr), NilObjectException);
    const std::string listed = "%&=,/\\][{}`~-_()*^$#!+;<>\r\n";
    for (int code = 0; code < 256; ++code) {
        const std::string text(1, static_cast<char>(code));
        char escape[4];
        snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(code));
        const std::string passed = text == " " ? "+" : text;
        form->SetValue("", text);
        EXPECT_EQ(socket->EncodeFormData(form), "=" + (listed.find(text) == listed.npos ? passed : escape));
    }
    form->SetValue("", "");
    std::string expected = "=";
    const std::string cases[][2] = {
        {"a b+c", "a+b%2Bc"},     {"100%", "100%25"},
        {"x-y_z", "x%2Dy%5Fz"},   {"me@host.example", "me@host.example"},
        {"1\r\n2", "1%0D%0A2"},   {"VRNTH - N/A", "VRNTH+%2D+N%2FA"},
        {"%2B=&", "%252B%3D%26"}, {"\"Gr\xC3\xBC\xFF': ?|", "\"Gr\xC3\xBC\xFF':+?|"}};
    for (const auto& [text, escaped] : cases) {
        form->SetValue(text, text);
        expected += "&" + escaped + "=" + escaped;
    }
    EXPECT_EQ(socket->EncodeFormData(form), expected);
}

// Where a URL leads, and what the server there reads.
TEST_F(HTTPTest, CutsAURLIntoWhatTheWireNeeds) {
    const std::string here = server.At("");
    const std::string cases[][3] = {{"http://" + here + "/x", here, "/x"},
                                    {here + "/a/b?c=d#e f", here, "/a/b?c=d#e f"},
                                    {"http://127.0.0.1", "127.0.0.1", "/"},
                                    {"https://127.0.0.1/", "127.0.0.1", "/"},
                                    {"://127.0.0.1//x", "127.0.0.1", "//x"},
                                    {"http://127.0.0.1:abc/", "127.0.0.1:abc", "/"},
                                    {"http://127.0.0.1:0x:1/", "127.0.0.1:0x:1", "/"},
                                    {"elsewhere/go?to=http://127.0.0.1/x", "127.0.0.1", "/x"},
                                    {"localhost/x", "localhost", "/x"}};
    client->DefaultPort = server.Port();
    for (const auto& [url, host, path] : cases) {
        client->Get(url);
        EXPECT_EQ(TakeRequest(), PlainRequest("GET", path, host)) << url;
        EXPECT_EQ(client->Address, NthField(host, ":", 1));
    }
}

TEST_F(HTTPTest, ReportsAnAddressThatLeadsNowhere) {
    RawServer refusing;
    refusing.StopListening();
    const std::pair<std::string, const char*> cases[] = {
        {"", "Error 103"},
        {"/x", "Error 103"},
        {"http://" + std::string(300, 'x') + "/", "Error 103"},
        {refusing.At("/"), "Error 104"},
        {"127.0.0.1:" + Str(server.Port() + 65536) + "/", "Error 104"},
        {"127.0.0.1:-1/", "Error 104"},
        {"127.0.0.1:99999999999999999999/", "Error 104"}};
    for (const auto& [url, expected] : cases) {
        client->Get(url);
        EXPECT_EQ(events, Lines{}) << "nothing happens within the call";
        PumpUntilEnd();
        EXPECT_EQ(events, Lines{expected}) << url;
        EXPECT_EQ(client->Get(url, 5), "");
        EXPECT_NE(client->ErrorCode(), 0);
        events.clear();
    }
}

}  // namespace varnith::test
