#include "export/ExcelWritterExtension.h"
#include "export/Exporter.h"
#include "platform/base/Text.h"
#include "platform/ui/Application.h"
#include "support/ProgramTest.h"

namespace varnith::test {

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
    const std::string last = "\tc.tiff\t0\t" + here + "/sub\ttiff\t\t\r";
    const std::string all =
        "\ta.tif\t3\t" + here + "\ttif\t\t\r\t" + odd + "\t12\t" + here + "\tTIF\t\t\r" + last;
    Start([&] {
        EXPECT_EQ(Saved(Excel), "");
        Scan(documents.Path(), true);
        EXPECT_EQ(Saved(Excel, ";"), all);
        EXPECT_EQ(Saved(Text, ";"), "");
        for (const std::int32_t row : {0, 1}) Main().Listbox1.SetCellCheck(row, 0, true);
        EXPECT_EQ(Saved(Excel), all);
        const auto lines = [&](const std::string& s) {
            return "a.tif" + s + "3" + s + here + s + "tif\n" + odd + s + "12" + s + here + s + "TIF\n";
        };
        for (const char* separator : {"", ";", ", ", "\xE2\x86\x92", "\xFF\n"})
            EXPECT_EQ(Saved(Text, separator), lines(separator));
        EXPECT_EQ(Saved(Tabs, ";"), lines("\t"));

        Main().PopupMenu1.Pick(2);  // the type tiff; what a pick shows is unticked
        EXPECT_EQ(Saved(Tabs), "");
        Main().Listbox1.ToggleCheck(0);
        EXPECT_EQ(Saved(Tabs), "c.tiff\t0\t" + here + "/sub\ttiff\n");
        EXPECT_EQ(Saved(Excel), last);
        ExcelWritterExtension::saveAsExcelFile(Main().Listbox1, nullptr);
        // Other lists are written in the form of the window's, and one with fewer columns can't be.
        Listbox narrow;
        narrow.SetColumns("one\ttwo", ",");
        ExcelWritterExtension::saveAsExcelFile(narrow, FolderItem::FromPath(target));
        EXPECT_EQ(BytesOf(target), "");
        narrow.AddRow("a");
        EXPECT_THROW(ExcelWritterExtension::saveAsExcelFile(narrow, FolderItem::FromPath(target)),
                     OutOfBoundsException);
    });
}

TEST_F(ExporterTest, WritesWholeRowsWhileAScanAppends) {
    for (int i = 0; i < 40; ++i) documents.File(std::to_string(i) + ".tif", TiffBytes(1));
    Start([&] {
        const auto scan_three = [&] {
            Main().CheckBox4.SetValue(true);
            Locate(documents.Path());
            RunThreadsUntil([] { return Main().Listbox1.ListCount() == 3; });
        };
        scan_three();
        Main().Listbox1.SetCellCheck(1, 0, true);
        EXPECT_EQ(Saved(Tabs), "1.tif\t1\t" + documents.Path() + "\ttif\n");
        scan_three();
        const std::string during = Saved(Excel);
        RunThreads();
        // Seven yields a row, at each of which the scan adds one: all are there when the first is written.
        EXPECT_EQ(during, Saved(Excel));
        EXPECT_EQ(SavedRows().size(), 40u);
    });
}

TEST_F(ExporterTest, AsksWhereToSaveAndShowsTheFolder) {
    const std::pair<std::int32_t, const char*> offers[] = {{Excel, "Excel Spreadsheet (*.xls)|Varnith.xls"},
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
            for (const std::string& bad : {application / "missing/out", application.Path()}) {
                Save(format, ";", bad);
                EXPECT_TRUE(StoodOpen()) << bad;
            }
            EXPECT_TRUE(desktop.opened.empty());

            application.File("out", std::string(100, 'x'));
            EXPECT_EQ(Saved(format), "") << "what was there is replaced";
            EXPECT_FALSE(StoodOpen());
            EXPECT_EQ(desktop.opened, Lines({application.Path()}));
            desktop.opened.clear();
        }
        EXPECT_EQ(Exporter::Instance()->PopupMenu1.ListIndex(), 0);
        EXPECT_EQ(Exporter::Instance()->EditField1.Text(), "");
        EXPECT_TRUE(desktop.messages.empty());
    });
}

TEST_F(ExporterTest, StandsInFrontOnceAndClosesByKey) {
    Start([&] {
        const auto export_again = [&] {
            Application::Current().Choose(Main().FileExport());
            EXPECT_EQ(Application::Current().FrontWindow(), Exporter::Instance());
            EXPECT_FALSE(Application::Current().IsEnabled(*Main().FileExport()));
            return Exporter::Instance();
        };
        const Ref<Exporter> window = export_again();
        EXPECT_EQ(std::pair(window->Left(), window->Top()), std::pair(385, 294));
        std::string places;
        for (const Control* control : window->Controls()) {
            const Bounds& b = control->CurrentBounds();
            for (const std::int32_t value : {b.Left, b.Top, b.Width, b.Height}) places += Str(value) + " ";
        }
        EXPECT_EQ(places, "21 14 72 20 22 40 211 20 22 72 75 20 22 97 127 22 88 131 80 20 ");
        Main().Show();
        EXPECT_EQ(export_again(), window);
        window->PressKey("w");
        EXPECT_EQ(Application::Current().FrontWindow(), window);
        for (bool TestDesktop::*modifier : {&TestDesktop::command_key, &TestDesktop::control_key}) {
            desktop.*modifier = true;
            EXPECT_FALSE(export_again()->PressKey("W"));
            desktop.*modifier = false;
            EXPECT_FALSE(StoodOpen());
        }
        EXPECT_FALSE(desktop.quit_status);
    });
}

}  // namespace varnith::test
