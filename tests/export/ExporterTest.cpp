#include <future>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "export/Exporter.h"
#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "platform/threads/Thread.h"
#include "platform/ui/Application.h"

namespace varnith::test {

constexpr std::int32_t Excel = 1;
constexpr std::int32_t Text = 2;
constexpr std::int32_t Tabs = 3;

class ExporterTest : public ProgramTest {
  protected:
    ExporterTest() {
        desktop.choose_file = [this](const std::string& filter, const std::string& name) {
            offered = filter + "|" + name;
            return picked;
        };
    }

    // Chooses "Export", picks the format, types the separator and presses "Save". Returns what the file then
    // holds.
    std::string Save(std::int32_t format, const std::string& separator = "") {
        Application::Current().Choose(Main().FileExport());
        Exporter& window = *Exporter::Instance();
        window.PopupMenu1.Pick(window.PopupMenu1.Rows().at(static_cast<std::size_t>(format)));
        window.EditField1.SetText(separator);
        window.PushButton1.Press();
        return BytesOf(target);
    }
    // The format and separator in the export window, which opens if it isn't open.
    static std::string Choice() {
        return Str(Exporter::Instance()->PopupMenu1.ListIndex()) + Exporter::Instance()->EditField1.Text();
    }

    const std::string target = application.File("out", "before");
    // The arguments of the save dialog, and its answer.
    std::string offered;
    std::optional<std::string> picked = target;
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
        Scan(documents.Path(), true);
        for (int press = 0; press < 2; ++press) Main().Listbox1.PressHeading(2);
        EXPECT_EQ(Save(Excel, ";"), all);
        for (const std::int32_t row : {0, 1}) Main().Listbox1.ToggleCheck(row);
        EXPECT_EQ(Save(Excel), all);
        const auto lines = [&](const std::string& s) {
            return odd + s + "12" + s + here + s + "TIF\n" + "a.tif" + s + "3" + s + here + s + "tif\n";
        };
        for (const char* separator : {"", ";", ", ", "\xE2\x86\x92", "\xFF\n"})
            EXPECT_EQ(Save(Text, separator), lines(separator));
        EXPECT_EQ(Save(Tabs, ";"), lines("\t"));

        Main().PopupMenu1.Pick("tiff");  // the rows that it shows are unticked
        EXPECT_EQ(Save(Tabs), "");
        EXPECT_EQ(Save(Excel), last);

        // While the export runs, after its first row, a scan empties the list and then fills it again.
        Main().Listbox1.ToggleCheck(0);
        Locate(documents.Path());
        EXPECT_EQ(Save(Tabs), "c.tiff\t0\t" + here + "/sub\ttiff\n");
        const std::string during = Save(Excel);
        RunThreads();
        EXPECT_TRUE(Save(Excel).starts_with(during)) << during;
    });
}

TEST_F(ExporterTest, WritesIntoAFifoForAsLongAsItIsRead) {
    picked = application / "fifo";
    ASSERT_EQ(mkfifo(picked->c_str(), 0600), 0);
    FileDescriptor reader(open(picked->c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    Start([&] {
        for (int row = 0; row < 1000; ++row) Main().Listbox1.AddRow(std::string(100, 'n'));
        auto read = std::async(std::launch::async, [this] { return BytesOf(*picked); });
        Save(Excel);
        EXPECT_EQ(read.get().size(), 107'000u);
        const auto leave = MakeRef<Beside>([&] { reader = {}; });
        Save(Excel);
        EXPECT_EQ(Choice(), "0") << "the save ends as usual";
    });
}

TEST_F(ExporterTest, ClosesBehindASaveAndOtherwiseStays) {
    const std::pair<std::int32_t, const char*> saves[] = {{Excel, "Excel Spreadsheet (*.xls)|Varnith.xls"},
                                                          {Text, "Text Export (*.txt)|Varnith.txt"},
                                                          {Tabs, "Text Export (*.txt)|Varnith.txt"}};
    documents.File("a.tif", TiffBytes(1));
    Start([&] {
        Scan(documents.Path(), false);
        Main().Listbox1.ToggleCheck(0);
        EXPECT_EQ(Save(0, ";"), "before");
        EXPECT_EQ(desktop.dialogs + desktop.beeps, 1) << "only the scan's dialog";
        EXPECT_EQ(Choice(), "0;");
        for (const auto& [format, offer] : saves) {
            application.File("out", "before");
            const std::optional<std::string> no_files[] = {
                {}, application / "missing/out", application.Path()};
            for (const auto& no_file : no_files) {
                picked = no_file;
                EXPECT_EQ(Save(format, ";"), "before");
                EXPECT_EQ(offered, offer);
                EXPECT_EQ(Choice(), Str(format) + ";");
            }
            EXPECT_EQ(desktop.opened, Lines());
            picked = target;
            // A write past the limit fails, as on a full disk.
            for (const rlim_t room : {rlim_t{10}, RLIM_INFINITY}) {
                const rlimit disk_size{room, RLIM_INFINITY};
                setrlimit(RLIMIT_FSIZE, &disk_size);
                EXPECT_EQ(Save(format, ";") == "before", room == 10);
                EXPECT_EQ(std::exchange(desktop.opened, {}), Lines({application.Path()}));
                EXPECT_EQ(Choice(), "0");
            }
        }
        EXPECT_TRUE(desktop.messages.empty());
    });
}

}  // namespace varnith::test
