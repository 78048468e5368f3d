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
    // "Export" is chosen, the format picked, the separator typed, "Save" pressed and the dialog answered.
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
    // The format and separator in the export window, which opens if it isn't there.
    static std::string Choice() {
        return Str(Exporter::Instance()->PopupMenu1.ListIndex()) + Exporter::Instance()->EditField1.Text();
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
        "\t" + odd + "\t12\t" + here + "\tTIF\t\t\r\ta.tif\t3\t" + here + "\ttif\t\t\r" + last;
    Start([&] {
        EXPECT_EQ(Saved(Excel), "");
        Scan(documents.Path(), true);
        for (int press = 0; press < 2; ++press) Main().Listbox1.PressHeading(2);
        EXPECT_EQ(Saved(Excel, ";"), all);
        EXPECT_EQ(Saved(Text, ";"), "");
        for (const std::int32_t row : {0, 1}) Main().Listbox1.ToggleCheck(row);
        EXPECT_EQ(Saved(Excel), all);
        const auto lines = [&](const std::string& s) {
            return odd + s + "12" + s + here + s + "TIF\n" + "a.tif" + s + "3" + s + here + s + "tif\n";
        };
        for (const char* separator : {"", ";", ", ", "\xE2\x86\x92", "\xFF\n"})
            EXPECT_EQ(Saved(Text, separator), lines(separator));
        EXPECT_EQ(Saved(Tabs, ";"), lines("\t"));

        Main().PopupMenu1.Pick(2);  // the type tiff; what a pick shows is unticked
        EXPECT_EQ(Saved(Tabs), "");
        EXPECT_EQ(Saved(Excel), last);
        Main().Listbox1.ToggleCheck(0);
        EXPECT_EQ(Saved(Tabs), "c.tiff\t0\t" + here + "/sub\ttiff\n");

        ExcelWritterExtension::saveAsExcelFile(Main().Listbox1, nullptr);
        Listbox narrow;
        narrow.SetColumns("one", "");
        narrow.AddRow("a");
        EXPECT_THROW(ExcelWritterExtension::saveAsExcelFile(narrow, FolderItem::FromPath(target)),
                     OutOfBoundsException)
            << "every list is written in the form of the window's";
    });
}

TEST_F(ExporterTest, WritesWholeRowsWhileAScanAppends) {
    for (int i = 0; i < 40; ++i) documents.File(std::to_string(i) + ".tif", TiffBytes(1));
    Start([&] {
        const auto saved_during_scan = [&](std::int32_t format) {
            Main().CheckBox4.SetValue(true);
            Locate(documents.Path());
            RunThreadsUntil([] { return Main().Listbox1.ListCount() == 3; });
            Main().Listbox1.ToggleCheck(1);
            return Saved(format);
        };
        EXPECT_EQ(saved_during_scan(Tabs), "1.tif\t1\t" + documents.Path() + "\ttif\n");
        const std::string during = saved_during_scan(Excel);
        RunThreads();
        // Seven yields a row, at each of which the scan adds one: all are there when the first is written.
        EXPECT_EQ(during, Saved(Excel));
        EXPECT_EQ(SavedRows().size(), 40u);
    });
}

TEST_F(ExporterTest, ClosesBehindASaveAndOtherwiseStays) {
    const std::pair<std::int32_t, const char*> offers[] = {{Excel, "Excel Spreadsheet (*.xls)|Varnith.xls"},
                                                           {Text, "Text Export (*.txt)|Varnith.txt"},
                                                           {Tabs, "Text Export (*.txt)|Varnith.txt"}};
    Start([&] {
        Save(0, ";", target);
        EXPECT_EQ(desktop.dialogs + desktop.beeps, 0);
        EXPECT_EQ(Choice(), "0;");
        for (const auto& [format, offer] : offers) {
            const std::optional<std::string> no_files[] = {std::nullopt, application / "missing/out",
                                                           application.Path()};
            for (const auto& no_file : no_files) {
                Save(format, ";", no_file);
                EXPECT_EQ(offered, offer);
                EXPECT_EQ(Choice(), Str(format) + ";");
            }
            EXPECT_EQ(desktop.opened, Lines());

            application.File("out", std::string(100, 'x'));
            EXPECT_EQ(Saved(format), "") << "what was there is replaced";
            EXPECT_EQ(desktop.opened, Lines({application.Path()}));
            desktop.opened.clear();
            EXPECT_EQ(Application::Current().FrontWindow(), Ref<Window>(&Main()));
        }
        EXPECT_EQ(Choice(), "0");
        EXPECT_TRUE(desktop.messages.empty());
    });
}

}  // namespace varnith::test
