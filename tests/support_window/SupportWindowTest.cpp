#include <atomic>
#include <thread>

#include "app/App.h"
#include "platform/base/Text.h"
#include "support/FormInputs.h"
#include "support/ProgramTest.h"
#include "support/SupportWindow.h"
#include "update/MakersServer.h"

namespace varnith::test {
namespace {

class SupportWindowTest : public ProgramTest {
  protected:
    static SupportWindow& Opened() {
        App::Instance().Choose(Main().HelpSupport());
        return *SupportWindow::Instance();
    }
    static SupportWindow& Filled(const std::string& address) {
        SupportWindow& w = Opened();
        w.EditField1.SetText(address);
        w.EditField2.SetText("n");
        w.EditField3.SetText("t");
        w.Timer1_Action();
        return w;
    }
};

TEST_F(SupportWindowTest, OpensEmptyComposesTheDetailsAndEnablesSendByItsTimer) {
    disk.elsewhere["/proc/meminfo"] =
        application.File("memory", "MemTotal:  8388608 kB\nMemFree:  10000 kB\nMemAvailable:  2095700 kB\n");
    disk.elsewhere["/sys/class/dmi/id/product_serial"] = application.File("serial", "C02-X 1\n");
    disk.fails = [](const std::string& path) { return path == "/sys/devices/system/memory"; };
    Start([&] {
        SupportWindow& w = Opened();
        const std::string details = w.kDetails;
        const std::string user = NthField(details, "User Name: ", 2);
        EXPECT_GT(user.size(), 1u);
        EXPECT_EQ(details,
                  "App Name:Varnith\rVersion: 1.2\rOS Version: \rTotal RAM: 8192 MB\r"
                  "Available RAM: 2047 MB\rComputer Number: C02-X 1\rUser Name: " +
                      user);
        std::string topics;
        for (const std::string& topic : w.PopupMenu1.Rows()) topics += topic + "|";
        EXPECT_EQ(topics,
                  "N/A|Cosmetic Issue|Feature Request|Crash/Freeze|Documentation|Functionality|Imports|"
                  "Website|");

        EXPECT_EQ(desktop.timers.at(0)->period, 1000);
        for (const int filled : {0, 3, 5, 6, 7, 3}) {
            w.EditField1.SetText(filled & 1 ? "a" : "");
            w.EditField2.SetText(filled & 2 ? " " : "");
            w.EditField3.SetText(filled & 4 ? "\n" : "");
            desktop.timers.at(0)->fire();
            EXPECT_EQ(w.PushButton1.Enabled(), filled == 7);
        }
        w.PopupMenu1.Pick(3);
        w.PushButton2.Press();
        EXPECT_TRUE(desktop.timers.empty());
        EXPECT_EQ(Opened().EditField1.Text() + Opened().PopupMenu1.Text() + Opened().kDetails,
                  "N/A" + details);
    });
}

TEST_F(SupportWindowTest, RefusesATextWithoutAnAddressAtOnce) {
    const std::string many(1'000'000, 'a');
    Start([&] {
        for (const std::string& text : {std::string("Me@host"), std::string("me@.host.org "),
                                        std::string("me@-host.org"), many + "@.", "a@" + many + "-."}) {
            Filled(text).PushButton1.Press();
            EXPECT_TRUE(desktop.messages == Lines{text + " not valid email"}) << text.substr(0, 20);
            EXPECT_EQ(SupportWindow::Instance()->EditField3.Text(), "t");
            desktop.messages.clear();
        }
        EXPECT_FALSE(MakersServer().HasVisitor());
    });
}

TEST_F(SupportWindowTest, SendsATicketWhateverTheServerDoesWhileAScanGoesOn) {
    std::atomic<int> counted = 0;
    disk.fails = [&](const std::string& path) {
        counted += path.ends_with(".tif");
        return false;
    };
    for (int i = 0; i < 5'000; ++i) documents.File(std::to_string(i) + ".tif");
    RawServer& server = MakersServer();
    const auto waits_for_the_scan = [&] {
        const int enough = counted + 100;
        while (counted < enough) ASSERT_FALSE(server.ClientGoesWithin(1));
    };
    const auto drips = [&] {
        server.Send("HTTP/1.0 500 No\r\n\r\n");
        for (int drop = 0; drop < 5; ++drop) {
            EXPECT_FALSE(server.ClientGoesWithin(500));
            server.Send("x");
        }
    };
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"waits for the scan", waits_for_the_scan},
        {"never answers", [&] { EXPECT_TRUE(server.ClientHasGone()); }},
        {"drips an error page", drips},
        {"is not there", nullptr},
    };
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        for (const auto& [what, answer] : cases) {
            SCOPED_TRACE(what);
            SupportWindow& w = Filled("Write to ME@X.ORG, please");
            EXPECT_EQ(w.Patience, 30);
            w.Patience = 2;
            if (!answer) server.StopListening();
            std::thread beside([&server, &its_answer = answer] {
                if (!its_answer) return;
                server.TakeRequest();
                its_answer();
                server.Close();
            });
            w.PushButton1.Press();
            beside.join();
            EXPECT_EQ(desktop.messages, Lines{"Support Ticket Sent!"});
            EXPECT_TRUE(App::Instance().FrontWindow() == Ref<Window>(&Main()));
            desktop.messages.clear();
        }
        RunThreads();
        EXPECT_EQ(Main().StaticText2.Text(), "5000 file(s)");
    });
}

TEST(FormInputs, ReadsThePageAsPlainText) {
    const auto inputs = FormInputs(
        "<input type=x name=no value=no><FORM>x<INPUT TYPE=x NAME=\"a\" VALUE=\"b\"><input type=x name=\te>"
        "<input type=x name=\"f g\" value=\"h i\"></form><input type=x name=no value=no>");
    std::string read;
    for (std::int32_t i = 0; i < inputs->Count(); ++i)
        read += inputs->Key(i) + "=" + inputs->Value(inputs->Key(i)) + ";";
    EXPECT_EQ(read, "a=b;e=;f=h;");
}

}  // namespace
}  // namespace varnith::test
