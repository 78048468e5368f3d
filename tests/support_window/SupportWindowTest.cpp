#include "app/App.h"
#include "platform/base/Text.h"
#include "support/FormInputs.h"
#include "support/ProgramTest.h"
#include "support/SupportWindow.h"

namespace varnith::test {
namespace {

using SupportWindowTest = ProgramTest;

SupportWindow& Opened() {
    App::Instance().Choose(MainWindow::Instance()->HelpSupport());
    return *SupportWindow::Instance();
}

TEST_F(SupportWindowTest, ComposesTheDetailsAndOpensEmptyEachTime) {
    disk.elsewhere["/etc/os-release"] = application.File("release", "VERSION_ID=12\nVERSION=\"12 (test)\"\n");
    disk.elsewhere["/proc/meminfo"] =
        application.File("memory", "MemTotal:  8388608 kB\nMemFree:  10000 kB\nMemAvailable:  2095700 kB\n");
    disk.elsewhere["/sys/class/dmi/id/product_serial"] = application.File("serial", "C02-X 1\n");
    disk.fails = [](const std::string& path) { return path == "/sys/devices/system/memory"; };
    Start([&] {
        SupportWindow& w = Opened();
        const std::string details = w.kDetails;
        const std::string user = NthField(details, "\r", 7);
        EXPECT_EQ(details,
                  "App Name:Varnith\rVersion: 3.14\rOS Version: 12 (test)\rTotal RAM: 8192 MB\r"
                  "Available RAM: 2047 MB\rComputer Number: C02-X 1\r" +
                      user + "\r");
        EXPECT_TRUE(user.starts_with("User Name: ") && user.size() > 11) << user;
        std::string topics;
        for (const std::string& topic : w.PopupMenu1.Rows()) topics += topic + "|";
        EXPECT_EQ(topics,
                  "N/A|Cosmetic Issue|Feature Request|Crash/Freeze|Documentation|Functionality|Imports|"
                  "Website|");
        w.EditField1.SetText("a");
        w.PopupMenu1.Pick(3);
        w.PushButton2.Press();
        EXPECT_TRUE(App::Instance().FrontWindow() == Ref<Window>(&Main()));
        EXPECT_EQ(Opened().EditField1.Text() + Opened().PopupMenu1.Text(), "N/A");
        EXPECT_EQ(Opened().kDetails, details) << "composed anew, not added to";
    });
}

TEST_F(SupportWindowTest, EnablesSendByTheTimerAlone) {
    Start([&] {
        SupportWindow& w = Opened();
        ASSERT_EQ(desktop.timers.size(), 1u);
        EXPECT_EQ(desktop.timers[0]->period, 1000);
        for (const int filled : {0, 1, 2, 3, 4, 5, 6, 7, 5}) {
            const bool before = w.PushButton1.Enabled();
            w.EditField1.SetText(filled & 1 ? "a" : "");
            w.EditField2.SetText(filled & 2 ? " " : "");
            w.EditField3.SetText(filled & 4 ? "\n" : "");
            EXPECT_EQ(w.PushButton1.Enabled(), before);
            desktop.timers[0]->fire();
            EXPECT_EQ(w.PushButton1.Enabled(), filled == 7);
        }
        w.Close();
        EXPECT_TRUE(desktop.timers.empty());
    });
}

TEST(FormInputs, ReadsThePageAsPlainText) {
    const auto inputs = FormInputs(
        "<input type=text name=no value=no><FORM>x<INPUT TYPE=text NAME=\"a\" VALUE=\"b\">\n<input type=x "
        "value=\"c\td\" name=\te><input type=text name=\"f g\" value=\"h i\"><input type=text name=A>");
    std::string read;
    for (std::int32_t i = 0; i < inputs->Count(); ++i)
        read += inputs->Key(i) + "=" + inputs->Value(inputs->Key(i)) + ";";
    EXPECT_EQ(read, "a=;e=c\td;f=h;");
    EXPECT_EQ(FormInputs("<form></form><input type=text name=a value=b>")->Count(), 0);
}

}  // namespace
}  // namespace varnith::test
