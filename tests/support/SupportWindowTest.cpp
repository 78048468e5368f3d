#include <thread>

#include "app/App.h"
#include "helpers/MakersServer.h"
#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "support/FormInputs.h"
#include "support/SupportWindow.h"

namespace varnith::test {
namespace {

class SupportWindowTest : public ProgramTest {
  protected:
    void Start(const std::function<void()>& user) { EXPECT_EQ(ProgramTest::Start(user), 0); }

    static SupportWindow& Filled(const std::string& address) {
        App::Instance().Choose(Main().HelpSupport());
        SupportWindow& w = *SupportWindow::Instance();
        EXPECT_EQ(w.PushButton1.Enabled(), !w.EditField1.Text().empty());
        w.EditField1.SetText(address);
        w.EditField2.SetText("n");
        w.EditField3.SetText("t");
        w.Timer1_Action();
        return w;
    }
};

TEST_F(SupportWindowTest, ComposesTheDetailsAndEnablesSendForAllThatIsFilled) {
    disk.elsewhere["/proc/meminfo"] =
        application.File("memory", "MemTotal:  8388608 kB\nMemFree:  10000 kB\nMemAvailable:  2095700 kB\n");
    disk.elsewhere["/sys/class/dmi/id/product_serial"] = application.File("serial", "C02-X 1\n");
    disk.fails = [](const std::string& path) { return path == "/sys/devices/system/memory"; };
    Start([&] {
        SupportWindow& w = Filled("");
        const std::string details =
            "App Name:Varnith\rVersion: 1.2\rOS Version: \rTotal RAM: 8192 MB\r"
            "Available RAM: 2047 MB\rComputer Number: C02-X 1\rUser Name: ";
        EXPECT_EQ(w.kDetails.substr(0, details.size()), details);
        EXPECT_GT(w.kDetails.find('\r', details.size()), details.size()) << "the user name isn't empty";
        for (const int filled : {0, 3, 5, 6, 7, 3}) {
            w.EditField1.SetText(filled & 1 ? "a" : "");
            w.EditField2.SetText(filled & 2 ? " " : "");
            w.EditField3.SetText(filled & 4 ? "\n" : "");
            w.Timer1_Action();
            EXPECT_EQ(w.PushButton1.Enabled(), filled == 7);
        }
    });
}

TEST_F(SupportWindowTest, RefusesATextWithoutAnAddressAtOnce) {
    const std::string many(1'000'000, 'a');
    Start([&] {
        for (const std::string& text :
             {std::string("Me@host"), std::string("me@.host.org "), std::string("me@-host.org"), many + "@.",
              "a@" + many + "-.", ReplaceAll(many, "a", "a."), ReplaceAll(many, "aaaa", "a@a ")}) {
            Filled(text).PushButton1.Press();
            EXPECT_TRUE(desktop.messages == Lines{text + " not valid email"}) << text.substr(0, 20);
            EXPECT_EQ(SupportWindow::Instance()->EditField3.Text(), "t");
            desktop.messages.clear();
        }
        EXPECT_FALSE(MakersServer().HasVisitor());
    });
}

TEST_F(SupportWindowTest, SendsATicketWhateverTheServerDoesWhileAScanGoesOn) {
    for (int i = 0; i < 2'000; ++i) documents.File(std::to_string(i) + ".tif");
    std::thread beside([] {
        RawServer& server = MakersServer();
        EXPECT_NE(server.TakeRequest().find("subject=VRNTH+Topic+%2D+N%2FA"), std::string::npos);
        EXPECT_TRUE(server.ClientHasGone());
        server.TakeRequest();
        server.Send("HTTP/1.0 500 No\r\n\r\n");
        EXPECT_TRUE(server.DripFor(std::chrono::milliseconds(2200))) << "data restarts the timeout";
        server.StopListening();
        server.Close();
    });
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        for (const char* server : {"never answers", "drips an error page", "is not there"}) {
            SCOPED_TRACE(server);
            SupportWindow& w = Filled(std::string(10'000, 'x') + " ME@X.ORG, please");
            w.Patience = 2;
            w.PushButton1.Press();
            EXPECT_GT(Main().Listbox1.ListCount(), 0) << "a scan goes on during the request";
            EXPECT_EQ(desktop.messages, Lines{"Support Ticket Sent!"});
            EXPECT_TRUE(App::Instance().FrontWindow() == Ref<Window>(&Main()));
            desktop.messages.clear();
        }
    });
    beside.join();
}

TEST(FormInputs, ReadsThePageAsPlainText) {
    const auto inputs = FormInputs(
        "<input type=x name=no value=no><FORM>x<INPUT TYPE=x NAME=\"a\" VALUE=\"b\"><input type=x name=\te>"
        "<input type=x name=\"f g\" value=\"h i\"></form><input type=x name=no value=no>");
    EXPECT_EQ(inputs->Count(), 3);
    EXPECT_EQ(inputs->Value("a") + inputs->Value("e") + inputs->Value("f"), "bh");
}

}  // namespace
}  // namespace varnith::test
