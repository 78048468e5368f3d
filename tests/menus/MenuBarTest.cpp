#include "BuildSettings.h"
#include "app/App.h"
#include "menus/MenuBar1.h"
#include "support/ProgramTest.h"

namespace varnith::test {

using MenuBarTest = ProgramTest;

// An entry a line, those of a menu below it: "-" for a grey one, name, class, caption and shortcut.
Lines Described(const MenuItem& menu, const std::string& indent = "") {
    Lines lines;
    for (const Ref<MenuItem>& item : menu.Items()) {
        const char* kind = Ref<QuitMenuItem>::As(item) ? "Quit" : Ref<AppleMenuItem>::As(item) ? "Apple" : "";
        lines.push_back(indent + (App::Instance().IsEnabled(*item) ? "" : "-") + item->Name + "|" + kind +
                        "|" + item->Text + "|" + item->KeyboardShortcut);
        const Lines below = Described(*item, indent + " ");
        lines.insert(lines.end(), below.begin(), below.end());
    }
    return lines;
}

TEST_F(MenuBarTest, StandsWholeAndEnablesWhatTheFrontWindowHandles) {
    Start([&] {
        MainWindow& w = Main();
        const Ref<MenuBar> bar = w.MenuBar();
        EXPECT_TRUE(bar == Ref<MenuBar>(MenuBar1::Instance()) && bar == App::Instance().MenuBar());
        Lines tree = {"FileMenu||&File|",           " FileExport||Export|",
                      " FileQuit|Quit|&Quit|Cmd+Q", "HelpMenu||Help|",
                      " HelpSupport||Support|",     " HelpVisitWebsite||Visit Website|",
                      " -UntitledSeparator||-|",    " HelpAbout|Apple|About|"};
        EXPECT_EQ(Described(*bar), tree);
        EXPECT_TRUE(w.UntitledSeparator()->AutoEnable && w.FileQuit()->AutoEnable &&
                    w.HelpMenu()->AutoEnable);

        const auto other = MakeRef<Window>();
        other->Show();
        for (const int entry : {1, 4, 5, 7}) tree[entry].insert(1, "-");
        EXPECT_EQ(Described(*bar), tree);
        App::Instance().Choose(w.HelpVisitWebsite());
        EXPECT_EQ(desktop.urls, Lines());
        other->Close();
        App::Instance().Choose(w.HelpVisitWebsite());
        EXPECT_EQ(desktop.urls, (Lines{"http://" + BuildSettings::WebServer}));
    });
}

TEST_F(MenuBarTest, TheQuitEntryEndsTheProgramInFrontOfAnyWindow) {
    EXPECT_EQ(Start([&] {
                  MakeRef<Window>()->Show();
                  App::Instance().Choose(Main().FileQuit());
              }),
              0);
    EXPECT_EQ(desktop.quit_status, 0);
}

}  // namespace varnith::test
