#include <filesystem>

#include "export/ExcelWritterExtension.h"
#include "export/Exporter.h"
#include "platform/ui/Application.h"
#include "support/ProgramTest.h"

namespace varnith::test {
namespace {

constexpr std::int32_t Excel = 1;
constexpr std::int32_t Text = 2;
constexpr std::int32_t Tabs = 3;

class ExporterTest : public ProgramTest {
  protected:
    // "Export" is chosen, the format picked, the separator typed and "Save" pressed.
    void Save(std::int32_t format, const std::string& separator, const std::optional<std::string>& path) {
        Application::Current().Choose(Main().FileExport());
        Exporter& window = *Exporter::Instance();
        window.PopupMenu1.Pick(format);
        window.EditField1.SetText(separator);
        desktop.choose_file = [=, this](const std::string& filter, const std::string& name) {
            offered = filter + "|" + name;
            return path;
        };
        window.PushButton1.Press();
    }
    std::string Saved(std::int32_t format, const std::string& separator = "") {
        Save(format, separator, target);
        return BytesOf(target);
    }
    // Whether the export window is still there. It is closed, for the next one.
    static bool StoodOpen() {
        const bool open = Application::Current().FrontWindow() != Ref<Window>(&Main());
        if (open) Exporter::Instance()->Close();
        return open;
    }

    const std::string target = application / "out";
    std::string offered;
};

TEST_F(ExporterTest, WritesTheBytesOfEachFormat) {
    const std::string odd = "b;\t\"\r\n\xFF\xC3\xA4.TIF";
    documents.File("a.tif", TiffBytes(3));
    documents.File(odd, TiffBytes(12));
    documents.File("sub/c.tiff");
    const std::string here = documents.Path();
    const std::string all = "\ta.tif\t3\t" + here + "\ttif\t\t\r\t" + odd + "\t12\t" + here +
                            "\tTIF\t\t\r\tc.tiff\t0\t" + here + "/sub\ttiff\t\t\r";
    Start([&] {
        EXPECT_EQ(Saved(Excel), "");
        EXPECT_EQ(Saved(Text, ";"), "");
        Scan(documents.Path(), true);
        EXPECT_EQ(Saved(Excel, ";"), all);
        EXPECT_EQ(Saved(Text, ";"), "");
        for (const std::int32_t row : {0, 1}) Main().Listbox1.SetCellCheck(row, 0, true);
        EXPECT_EQ(Saved(Excel), all);
        for (const std::string separator : {"", ";", ", ", "\xE2\x86\x92", "\xFF\n"}) {
            const auto line = [&](const std::string& name, const char* pages, const char* type) {
                return name + separator + pages + separator + here + separator + type + "\n";
            };
            EXPECT_EQ(Saved(Text, separator), line("a.tif", "3", "tif") + line(odd, "12", "TIF"));
        }
        EXPECT_EQ(Saved(Tabs, ";"), "a.tif\t3\t" + here + "\ttif\n" + odd + "\t12\t" + here + "\tTIF\n");

        Main().PopupMenu1.Pick(2);  // the type tiff; what a pick shows is unticked
        EXPECT_EQ(Saved(Tabs), "");
        Main().Listbox1.ToggleCheck(0);
        EXPECT_EQ(Saved(Tabs), "c.tiff\t0\t" + here + "/sub\ttiff\n");
        EXPECT_EQ(Saved(Excel), "\tc.tiff\t0\t" + here + "/sub\ttiff\t\t\r");

        ExcelWritterExtension::saveAsExcelFile(Main().Listbox1, nullptr);
        EXPECT_FALSE(desktop.quit_status);
    });
}

TEST_F(ExporterTest, WritesWholeRowsWhileAScanAppends) {
    for (int i = 0; i < 40; ++i) documents.File(std::to_string(i) + ".tif", TiffBytes(1));
    Start([&] {
        Main().CheckBox4.SetValue(true);
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 3; });
        Main().Listbox1.SetCellCheck(1, 0, true);
        const std::string ticked = Saved(Tabs);
        EXPECT_EQ(ticked, "1.tif\t1\t" + documents.Path() + "\ttif\n");
        Locate(documents.Path());
        RunThreadsUntil([] { return Main().Listbox1.ListCount() == 3; });
        const std::string during = Saved(Excel);
        RunThreads();
        // Seven yields a row, at each of which the scan adds one: all are there when the first is written.
        EXPECT_EQ(during, Saved(Excel));
        EXPECT_EQ(SavedRows().size(), 40u);
    });
}

TEST_F(ExporterTest, AsksWhereToSaveAndShowsTheFolder) {
    const std::pair<std::int32_t, std::string> offers[] = {{Excel, "Excel Spreadsheet (*.xls)|Varnith.xls"},
                                                           {Text, "Text Export (*.txt)|Varnith.txt"},
                                                           {Tabs, "Text Export (*.txt)|Varnith.txt"}};
    Start([&] {
        Save(0, "", target);
        EXPECT_EQ(desktop.dialogs, 0);
        EXPECT_TRUE(StoodOpen());
        for (const auto& [format, offer] : offers) {
            Save(format, ";", std::nullopt);
            EXPECT_EQ(offered, offer);
            EXPECT_EQ(Exporter::Instance()->PopupMenu1.ListIndex(), format);
            EXPECT_EQ(Exporter::Instance()->EditField1.Text(), ";");
            EXPECT_TRUE(StoodOpen());

            application.File("old", std::string(100, 'x'));
            Save(format, ";", application / "old");
            EXPECT_EQ(BytesOf(application / "old"), "");
            EXPECT_FALSE(StoodOpen());
            EXPECT_EQ(desktop.opened, Lines({application.Path()}));
            desktop.opened.clear();

            for (const std::string& bad : {application / "missing/out", application.Path()}) {
                Save(format, ";", bad);
                EXPECT_TRUE(StoodOpen()) << bad;
            }
            EXPECT_TRUE(desktop.opened.empty());
        }
        EXPECT_EQ(Exporter::Instance()->PopupMenu1.ListIndex(), 0);
        EXPECT_EQ(Exporter::Instance()->EditField1.Text(), "");
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(ExporterTest, StandsInFrontOnceAndClosesByKey) {
    Start([&] {
        const auto choosable = [] {
            std::string names;
            for (const Ref<MenuItem>& menu : Main().MenuBar()->Items())
                for (const Ref<MenuItem>& entry : menu->Items())
                    if (Application::Current().IsEnabled(*entry)) names += entry->Name + " ";
            return names;
        };
        const std::string with_main = choosable();
        EXPECT_NE(with_main.find("FileExport "), std::string::npos);
        Application::Current().Choose(Main().FileExport());
        const Ref<Exporter> window = Exporter::Instance();
        EXPECT_EQ(choosable(), "FileQuit ");
        Main().Show();
        EXPECT_EQ(choosable(), with_main);
        Application::Current().Choose(Main().FileExport());
        EXPECT_EQ(Exporter::Instance(), window);
        EXPECT_EQ(Application::Current().FrontWindow(), window);
        EXPECT_EQ(std::to_string(window->Left()) + "," + std::to_string(window->Top()), "385,294");

        window->PressKey("w");
        EXPECT_EQ(Application::Current().FrontWindow(), window);
        for (bool TestDesktop::*modifier : {&TestDesktop::command_key, &TestDesktop::control_key}) {
            Application::Current().Choose(Main().FileExport());
            desktop.*modifier = true;
            EXPECT_FALSE(Exporter::Instance()->PressKey("W"));
            desktop.*modifier = false;
            EXPECT_FALSE(StoodOpen());
        }
        EXPECT_FALSE(desktop.quit_status);
    });
}

}  // namespace
}  // namespace varnith::test
