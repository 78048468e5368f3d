#include <utility>

#include "settings/Prefs.h"
#include "update/UpdateChecker.h"
#include "update/UpdateTest.h"
#include "update/UpdateUtilities.h"

namespace varnith::test {

namespace {

class CheckTest : public UpdateTest {
  protected:
    struct Running : Application {
        using Application::SetVersion, Application::Version;
    };

    // The URL of the download offered to the user.
    static std::string Offered() { return Offer() ? Offer()->downloadURL : "no offer"; }
    // The same for a program of that version that has received that data file.
    static std::string Offered(const Running::Version& version, const std::string& data) {
        Running running;
        running.SetVersion(version);
        MakeRef<UpdateChecker>()->Event_PageReceived("", 200, nullptr, data);
        return Offered();
    }
    static std::string LastCheck() { return Prefs::Value("lastupdatecheck", true, ""); }

    const std::string today = Date().SQLDate();
};

TEST_F(CheckTest, OffersOnlyAGreaterNumber) {
    const std::tuple<Running::Version, Lines, Lines> cases[] = {
        {{1, 2, 2}, {"1.2.3", "1.2.3b4", "2"}, {"1.2.2", "1.2.2.9", "1.2", "-2.0.0"}},
        // A part that overflows carries into the one before it.
        {{1, 9, 0}, {"1.10.0", "1.9.100", "1.8.101"}, {"1.9", "1.8.100", "0.19"}},
        {{2, 0, 0}, {"2.0.1"}, {"1.10.0", "1.9.100", "2"}},
        {{0, 0, 0}, {".1"}, {"", "new"}},
        // A number out of range becomes the greatest or the least one.
        {{2147483, 6, 46}, {"2147483.6.47", "1e999", "0.0.2147483648"}, {"-1e999", "1e999.-1e999"}},
        {{2147483647, 2147483647, 2147483647}, {}, {"99999999999999999999"}},
    };
    for (const auto& [running, greater, not_greater] : cases) {
        for (const std::string& version : greater)
            EXPECT_EQ(Offered(running, "version=" + version), "") << version;
        for (const std::string& version : not_greater)
            EXPECT_EQ(Offered(running, "version=" + version), "no offer") << version;
    }
}

TEST_F(CheckTest, ReadsTheDataFileLineByLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"version=2\r\n\ndownload-mac=http://x/y?a=b&c=d\nbuild-date=2008-06-24", "http://x/y?a=b&c=d"},
        {" \tversion = 2\t\rdownload-mac=  two  words \r", "two  words"},
        {"download-mac\nno value\n=no key\nversion=2", ""},
        {"version=2\nversion=1\n", "no offer"},
        {"# version=2", "no offer"},
    };
    for (const auto& [data, offered] : cases) EXPECT_EQ(Offered({1, 2, 3}, data), offered) << data;
}

TEST_F(CheckTest, IsMadeAtEachStartAndEndsInAnOfferOrWithoutAWord) {
    const std::string url_of_nobody = "http://127.0.0.1:70000/New.tar.gz?a=b";
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {nullptr, Page(""), "no offer"},
        {"no date", "HTTP/1.1 200 OK\r\nCont", "no offer"},
        {"2008-06-24", Page("<h1>404</h1>", "404 Not Found"), "no offer"},
        {today.c_str(), Page("version=1.2.4\ndownload-mac=" + url_of_nobody, "500 Error"), url_of_nobody},
        {today.c_str(), Page("version=1.2.4"), ""},
        // Too long to be a data file, and a head without an end.
        {today.c_str(), Page("version=1.2.4\n" + std::string(8 << 20, 'x')), "no offer"},
        {today.c_str(), "HTTP/1.1 200 OK\r\nX: " + std::string(8 << 20, 'x'), "no offer"},
    };
    for (const auto& [last_check, page, offered] : cases) {
        SCOPED_TRACE(page.substr(0, 100));
        const Environment without_temporary_folder("TMPDIR", "/nowhere");
        if (last_check) Prefs::SetValue("lastupdatecheck", true, last_check);
        Serve({page});
        Start([&, &address = offered] {
            EXPECT_EQ(LastCheck(), today) << "a failed check counts as made";
            ServeUntil([&] { return HasServed() && !UpdateUtilities::checker->IsConnected(); });
            EXPECT_EQ(Offered(), address);
            EXPECT_LT(UpdateUtilities::checker->Lookahead().size(), std::size_t{2} << 20);
            if (!Offer()) return;
            EXPECT_EQ(
                Offer()->MessageDisplay.Text() + "|" + Offer()->DetailDisplay.Text(),
                "Update Available!|There is a newer version of available for download.  Press the Update "
                "button to begin.");
            Offer()->ActionBtn.Press();
        });
        EXPECT_EQ(std::exchange(desktop.messages, {}).size(), offered == url_of_nobody ? 1u : 0u);
    }

    Date later;
    later.SetDay(later.Day() + 1);
    Prefs::SetValue("lastupdatecheck", true, later.SQLDate());
    Start([&] {
        EXPECT_FALSE(MakersServer().HasVisitor()) << "no check after the clock was set back";
        EXPECT_EQ(LastCheck(), later.SQLDate());
        Serve({Page("version=1.2.4\ndownload-mac=" + url_of_nobody)});
        UpdateUtilities::Check(true);
        ServeUntil([] { return static_cast<bool>(Offer()); });
        EXPECT_EQ(LastCheck(), today);
        Offer()->ActionBtn.Press();
        ServeUntil([] { return Offer()->Downloader->ErrorCode() != 0; });
    });
    EXPECT_EQ(desktop.messages, Lines());
}

}  // namespace

}  // namespace varnith::test
