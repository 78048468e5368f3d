#include <filesystem>

#include <sys/stat.h>

#include "helpers/ProgramTest.h"
#include "platform/base/Text.h"
#include "scan/Class1.h"

namespace varnith::test {

namespace fs = std::filesystem;
using namespace std::string_literals;
using CountsTest = ProgramTest;

TEST_F(CountsTest, EachScanTakesWhatItsRuleSays) {
    const auto expect_scan = [&](bool subfolders, const Lines& rows) {
        disk.opened.clear();
        Scan(documents.Path(), subfolders);
        EXPECT_EQ(Rows(), rows);
        std::erase_if(disk.opened, [&](const std::string& path) {
            return !path.starts_with(documents.Path()) || path.ends_with("/.hidden");
        });
        EXPECT_EQ(disk.opened.size(), rows.size()) << "each counted file is opened once, and no other";
    };
    for (const char* name :
         {"a.tif", "a.tIf", "a.tiff", "A.TIFF", "a.b.c.tif", "a.tif.", "atif", "a.pdf", "b 007.tif",
          "b 7.tif", "b 10.tif", "tif", "TIFF", ".tif", ".a.tif", ".a.tiff", "listed.tif", "listed.tiff"})
        documents.File(name, TiffBytes(2));
    for (const std::string folder :
         {"scans.tif", "scans.tiff", "TIF", "sub", ".sub/sub", "Some.app/Contents"})
        documents.File(folder + "/b.tif", TiffBytes(2));
    documents.File(".hidden", "listed.tif\nlisted.tiff\n");
    Start([&] {
        expect_scan(true, {"a.b.c.tif|2|.|tif", "a.tIf|2|.|tIf", "a.tif|2|.|tif", "A.TIFF|2|.|TIFF",
                           "a.tiff|2|.|tiff", "b 007.tif|2|.|tif", "b 7.tif|2|.|tif", "b 10.tif|2|.|tif",
                           "b.tif|2|scans.tif|tif", "b.tif|2|scans.tiff|tif", "b.tif|2|Some.app/Contents|tif",
                           "b.tif|2|sub|tif", "b.tif|2|TIF|tif", "TIFF|2|.|TIFF"});
        expect_scan(false, {".a.tif|2|.|tif", ".tif|2|.|tif", "a.b.c.tif|2|.|tif", "a.tIf|2|.|tIf",
                            "a.tif|2|.|tif", "A.TIFF|2|.|TIFF", "a.tiff|2|.|tiff", "b 007.tif|2|.|tif",
                            "b 7.tif|2|.|tif", "b 10.tif|2|.|tif", "listed.tif|2|.|tif", "scans.tif|2|.|tif",
                            "scans.tiff|2|.|tiff", "TIF|2|.|TIF", "tif|2|.|tif"});
    });
}

// The first words of each name are its place in the folder and the count to show. A file that can't be opened
// shows the count of the file before it in the same folder.
TEST_F(CountsTest, AnyFileGetsItsRowAndItsCountAndNothingHangs) {
    const std::string three = TiffBytes(3);
    using Make = std::function<void(const std::string& path)>;
    const auto file = [](const std::string& bytes) { return [=](const auto& p) { WriteFile(p, bytes); }; };
    const auto link = [](const char* target) {
        return [=](const auto& p) { std::filesystem::create_symlink(target, p); };
    };
    const auto node = [](mode_t kind) { return [=](const auto& p) { mknod(p.c_str(), kind | 0600, 0); }; };
    const std::pair<std::string, Make> entries[] = {
        {"01 0 empty, the first.tif", file("")},
        {"02 12 pages.tif", file(TiffBytes(12))},
        {"03 12 no TIFF.tif", file("damaged")},
        {"04 12 FIFO.tif", node(S_IFIFO)},
        {"05 12 socket.tif", node(S_IFSOCK)},
        {"06 12 endless device.tif", link("/dev/zero")},
        {"07 12 link to nowhere.tif", link("nowhere")},
        {"08 12 link to itself.tif", link("08 12 link to itself.tif")},
        {"09 12 link to its folder.tif", link(".")},
        {"10 12 unreadable.tif", file(three)},
        {"11 12 vanishes.tif", file(three)},
        {"12 12 turns into a FIFO.tif", file(three)},
        {"13 sub/01 0 empty, the first.tif", file("")},
        {"13 sub/02 5 pages.tif", file(TiffBytes(5))},
        {"13 sub/03 sub/01 0 empty.tif", file("")},
        {"13 sub/04 5 empty, behind a folder.tif", file("")},
        {"14 12 empty, behind a folder.tif", file("")},
        {"15 0 without a page.tif", file("II*\0\0\0\0\0"s)},
        {"17 1 page.tif", file(TiffBytes(1))},
        {"18 0 damaged.tif", file("MM\0*damaged"s)},
        {"19 1 page and one cut off.tif", file(three.substr(0, three.size() / 2))},
        {"20 2 pages without end.tif", file("II*\0\x8\0\0\0\0\0\xE\0\0\0\0\0\x8\0\0\0"s)},
        {"21 5 pages, by a link.tif", link("13 sub/02 5 pages.tif")},
        {"22 1 it's \"double\"'); drop table preferences; --\nline\r\ttab %s&?*\\\x1.tif",
         file(TiffBytes(1))},
        {"24 1 \xFF\xFE\xC3 \xD7\xA9\xE2\x80\xAE.tif", file(TiffBytes(1))},
        {"25 1 " + std::string(246, '\xE9') + ".tif", file(TiffBytes(1))},
        {"26 a'\"\n\xFF/01 1 page.tif", file(TiffBytes(1))},
    };
    disk.fails = [](const std::string& path) {
        const bool turns = path.ends_with("turns into a FIFO.tif");
        if (turns || path.ends_with("vanishes.tif") || path.ends_with("vanishes")) fs::remove_all(path);
        if (turns) mkfifo(path.c_str(), 0600);
        return path.find("unreadable") != path.npos;
    };
    Start([&] {
        for (const bool subfolders : {false, true}) {
            fs::remove_all(documents / "in");
            for (const char* lost : {"in/unreadable/a.tif", "in/vanishes/a.tif"}) documents.File(lost, three);
            // A list of hidden names that would fill the memory.
            fs::resize_file(documents.File("in/.hidden"), 1ULL << 40);
            Lines rows;
            for (const auto& [name, make] : entries) {
                const fs::path path("in/" + name);
                make(documents / path);
                const std::string leaf = path.filename();
                const std::string folder = path.parent_path();
                if (subfolders || folder == "in")
                    rows.push_back(leaf + "|" + NthField(leaf, " ", 2) + "|" + folder + "|tif");
            }
            Scan(documents / "in", subfolders);
            EXPECT_EQ(Rows(), rows);
        }
        EXPECT_EQ(SavedRows(), Rows()) << "byte for byte";
    });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(CountsTest, AThousandNestedFolders) {
    const std::string tiff = TiffBytes(2);
    documents.File("inner/z.tif", tiff);
    std::string deepest = "inner";
    for (int depth = 1; depth < 1000; ++depth) {
        documents.File("outer/z.tif", tiff);
        fs::rename(documents / "inner", documents / "outer/a folder among many");
        fs::rename(documents / "outer", documents / "inner");
        deepest += "/a folder among many";
    }
    Start([&] {
        Scan(documents.Path(), true);
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|1000 file(s)|All,tif");
        EXPECT_TRUE(Rows().at(0) == "z.tif|2|" + deepest + "|tif");
        EXPECT_TRUE(SavedRows() == Rows());
        // The stack ends in the midst of them.
        Main().Class11->StackSize = 300 << 10;
        Scan(documents.Path(), true);
        EXPECT_TRUE(Texts().starts_with("Varnith - Testix - Finished|."));
        EXPECT_LT(Rows().size(), 1000u);
        EXPECT_EQ(Rows().back(), "z.tif|2|inner|tif");
        EXPECT_TRUE(SavedRows() == Rows());
    });
}

}  // namespace varnith::test
