#include <limits>

#include "settings/Prefs.h"
#include "update/UpdateChecker.h"
#include "update/UpdateTest.h"
#include "update/UpdateUtilities.h"

namespace varnith::test {

namespace {

TEST(DataFileTest, IsReadLineByLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "[]=[]"},
        {"version=1.2.3\n", "[version]=[1.2.3] []=[]"},
        {"a=1\nb=2\rc=3\r\nd=4\n\re=5", "[a]=[1] [b]=[2] [c]=[3] [d]=[4] []=[] [e]=[5]"},
        {" \ta  key \t=  two  words ", "[a  key]=[two  words]"},
        {"url=http://x/y?a=b&c=d", "[url]=[http://x/y?a=b&c=d]"},
        {"=value\nkey=\nno value\na==", "[]=[value] [key]=[] [no value]=[] [a]=[=]"},
        {"version=1\nother=x\nversion=2", "[version]=[2] [other]=[x]"},
        {"# version=9.9.9", "[# version]=[9.9.9]"},
    };
    for (const auto& [content, expected] : cases) {
        const auto data = UpdateChecker::ParseDataFile(content);
        std::string entries;
        for (std::int32_t i = 0; i < data->Count(); ++i)
            entries += (i > 0 ? " [" : "[") + data->Key(i) + "]=[" + data->Value(data->Key(i)) + "]";
        EXPECT_EQ(entries, expected) << content;
    }
}

class Running : public Application {
  public:
    explicit Running(const Version& version) { SetVersion(version); }
    using Application::Version;
};

TEST(VersionTest, OnlyAGreaterNumberIsOffered) {
    constexpr std::int32_t Most = std::numeric_limits<std::int32_t>::max();
    struct Case {
        Running::Version running;
        Lines offered;
        Lines not_offered;
    };
    const Case cases[] = {
        {{1, 2, 2}, {"1.2.3", "1.2.3b4", "1.2.4.9", "2"}, {"1.2.2", "1.2.2.9", "1.2", "1", "-2.0.0"}},
        // The parts carry into each other.
        {{1, 9, 0}, {"1.10.0", "1.9.100", "1.8.101"}, {"1.9", "1.8.100", "0.19"}},
        {{2, 0, 0}, {"2.0.1"}, {"1.10.0", "1.9.100", "2"}},
        {{1, 10, 0}, {"1.10.1"}, {"2.0.0"}},
        // What is no number counts as 0.
        {{0, 0, 0}, {"v1.2.3", ".1"}, {"", "new", "v"}},
        // What does not fit is the greatest number, or the least.
        {{2147483, 6, 46},
         {"2147483.6.47", "99999999999999999999", "1e999", "0.0.2147483648"},
         {"-1e999", "1e999.-1e999"}},
        {{Most, Most, Most}, {}, {"99999999999999999999"}},
    };
    for (const Case& c : cases) {
        const auto offers = [&](const std::string& version) {
            const Running running(c.running);
            const auto data = MakeRef<Dictionary<std::string>>();
            data->SetValue("version", version);
            MakeRef<UpdateChecker>()->CheckVersion(data);
            return static_cast<bool>(running.FrontWindow());
        };
        for (const std::string& version : c.offered) EXPECT_TRUE(offers(version)) << version;
        for (const std::string& version : c.not_offered) EXPECT_FALSE(offers(version)) << version;
    }
}

class CheckTest : public UpdateTest {
  protected:
    // Starts the program, which gets this page, and lets the user work when it has taken it in.
    void StartAndCheck(const std::string& page, const std::function<void()>& user) {
        Serve({page});
        Start([&] {
            PumpUntil([&] { return HasServed() && !UpdateUtilities::checker->IsConnected(); });
            user();
        });
    }
    static std::string LastCheck() { return Prefs::Value("lastupdatecheck", true, ""); }

    const std::string today = Date().SQLDate();
};

TEST_F(CheckTest, WhatNamesNoNewerVersionEndsWithoutAWord) {
    for (const std::string& page :
         {Page("<h1>404</h1>", "404 Not Found"), Page(""), std::string(),
          std::string("HTTP/1.1 200 OK\r\nCont"), Page("version=latest\n"),
          Page("download-mac=http://127.0.0.1/new.tar.gz\n"), Page("version=1.0.0\n")})
        StartAndCheck(page, [&] { EXPECT_FALSE(Offer()) << page; });
    Start([&] {
        UpdateUtilities::checker->CheckNow("http://127.0.0.1:70000/nobody.can.be.here");
        PumpUntil([&] { return UpdateUtilities::checker->ErrorCode() != 0; });
        EXPECT_FALSE(Offer());
    });
    EXPECT_EQ(desktop.messages, Lines());
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(CheckTest, AnAnswerThatNamesOneLeadsToAnOffer) {
    const std::string url = "http://127.0.0.1:70000/New.tar.gz?a=b";
    const std::pair<std::string, std::string> cases[] = {
        {Page("version=1.0.1\r\ndownload-mac=" + url + "\r\nbuild-date=2008-06-24"), url},
        {Page("sorry\nbuild-date=soon\nversion=1.0.1\ndownload-mac=" + url, "500 Internal Server Error"),
         url},
        {Page("version=1.0.1"), ""},
    };
    for (const auto& [page, download] : cases)
        StartAndCheck(page, [&] {
            EXPECT_EQ(Offer()->downloadURL, download);
            EXPECT_EQ(
                Offer()->MessageDisplay.Text() + "|" + Offer()->DetailDisplay.Text(),
                "Update Available!|There is a newer version of available for download.  Press the Update "
                "button to begin.");
            // Nobody is at this address, and at the empty one.
            Offer()->ActionBtn.Press();
            PumpUntil([] { return Offer()->Downloader->ErrorCode() != 0; });
            EXPECT_EQ(Offer()->ActionBtn.Caption() + Str(Offer()->ProgressBar1.Value()), "Update0");
        });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(CheckTest, IsMadeAtEveryStartUnlessTheClockWasSetBack) {
    StartAndCheck(Page(""), [&] { EXPECT_EQ(LastCheck(), today) << "nothing was stored"; });
    for (const char* stored : {"", today.c_str(), "2008-06-24", "no date"}) {
        Prefs::SetValue("lastupdatecheck", true, stored);
        StartAndCheck(Page(""), [&] { EXPECT_EQ(LastCheck(), today) << stored; });
    }
    Date later;
    later.SetDay(later.Day() + 1);
    Prefs::SetValue("lastupdatecheck", true, later.SQLDate());
    Start([&] {
        EXPECT_FALSE(UpdateUtilities::checker->IsConnected());
        EXPECT_EQ(LastCheck(), later.SQLDate());
        Serve({Page("")});
        UpdateUtilities::Check(true);
        PumpUntil([&] { return HasServed(); });
        EXPECT_EQ(LastCheck(), today);
    });
    EXPECT_TRUE(MakeRef<UpdateChecker>()->TimeToCheck(nullptr));
}

}  // namespace

}  // namespace varnith::test
