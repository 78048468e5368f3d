#include <cstdio>

#include "http/support/HTTPTest.h"
#include "platform/base/Text.h"

namespace varnith::test {

namespace {

using Form = Dictionary<std::string>;

std::string Escaped(const std::string& text) {
    const auto form = MakeRef<Form>();
    form->SetValue("", text);
    return MakeRef<HTTPSocket>()->EncodeFormData(form).substr(1);
}

TEST(Escaping, TakesTheListedCharactersAndNoOthers) {
    const std::string listed = "%&=,/\\][{}`~-_()*^$#!+;<>\r\n";
    for (int code = 0; code < 256; ++code) {
        const std::string text(1, static_cast<char>(code));
        char escape[4];
        snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(code));
        const std::string expected = listed.find(text) != listed.npos ? escape : text == " " ? "+" : text;
        EXPECT_EQ(Escaped(text), expected) << code;
    }
    const std::string cases[][2] = {
        {"a b+c", "a+b%2Bc"},
        {"100%", "100%25"},
        {"x-y_z", "x%2Dy%5Fz"},
        {"%2B", "%252B"},
        {"me@host.example", "me@host.example"},
        {"1\r\n2", "1%0D%0A2"},
        {"\"Grüße\xFF\": 'ja?'|\t", "\"Grüße\xFF\":+'ja?'|\t"},
        {"VRNTH Topic - N/A", "VRNTH+Topic+%2D+N%2FA"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(Escaped(text), expected);
}

TEST(Escaping, JoinsTheFieldsOfAForm) {
    const auto socket = MakeRef<HTTPSocket>();
    const auto form = MakeRef<Form>();
    EXPECT_EQ(socket->EncodeFormData(form), "");
    form->SetValue("b=c", "1&2");
    form->SetValue("a", "");
    form->SetValue("c", "d e");
    EXPECT_EQ(socket->EncodeFormData(form), "b%3Dc=1%262&a=&c=d+e");
    EXPECT_THROW(socket->EncodeFormData(nullptr), NilObjectException);
}

// Where a URL leads, and what the server there reads. "PORT" stands for the server's port.
TEST_F(HTTPTest, CutsAURLIntoWhatTheWireNeeds) {
    struct Case {
        std::string url;
        std::string host;
        std::string path;
    };
    const Case cases[] = {
        {"http://127.0.0.1:PORT/x", "127.0.0.1:PORT", "/x"},
        {"127.0.0.1:PORT/a/b?c=d#e f", "127.0.0.1:PORT", "/a/b?c=d#e f"},
        {"http://127.0.0.1", "127.0.0.1", "/"},
        {"https://127.0.0.1/", "127.0.0.1", "/"},
        {"://127.0.0.1//x", "127.0.0.1", "//x"},
        {"http://127.0.0.1:abc/", "127.0.0.1:abc", "/"},
        {"http://127.0.0.1:0x:1/", "127.0.0.1:0x:1", "/"},
        {"elsewhere/go?to=http://127.0.0.1/x", "127.0.0.1", "/x"},
        {"localhost/x", "localhost", "/x"},
    };
    client->DefaultPort = server.Port();
    for (Case one : cases) {
        for (std::string* text : {&one.url, &one.host})
            *text = ReplaceAll(*text, "PORT", std::to_string(server.Port()));
        client->Get(one.url);
        EXPECT_EQ(TakeRequest(), PlainRequest("GET", one.path, one.host)) << one.url;
        EXPECT_EQ(client->Address, one.host.substr(0, one.host.find(':')));
        EXPECT_EQ(client->Port, server.Port());
    }
}

TEST_F(HTTPTest, ReportsAnAddressThatLeadsNowhere) {
    RawServer refusing;
    refusing.StopListening();
    const std::string no_such_name(300, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", "Error 103"},
        {"/x", "Error 103"},
        {"http://" + no_such_name + "/", "Error 103"},
        {refusing.At("/"), "Error 104"},
        {"127.0.0.1:" + std::to_string(server.Port() + 65536) + "/", "Error 104"},
        {"127.0.0.1:-1/", "Error 104"},
        {"127.0.0.1:99999999999999999999/", "Error 104"},
    };
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

}  // namespace

}  // namespace varnith::test
