#include <filesystem>
#include <fstream>
#include <set>

#include <sys/stat.h>

#include "results/Item.h"
#include "support/ProgramTest.h"

namespace varnith::test {

namespace fs = std::filesystem;
using namespace std::string_literals;
using HostileTest = ProgramTest;

TEST_F(HostileTest, AnOddFileGetsARowAndNothingHangs) {
    const std::string odd = documents / "b.tif";
    const std::string three = TiffBytes(3);
    const auto file = [&](const std::string& bytes) { return [=, this] { documents.File("b.tif", bytes); }; };
    const auto link = [&](const char* target) { return [=] { fs::create_symlink(target, odd); }; };
    const auto node = [&](mode_t kind) { return [=] { mknod(odd.c_str(), kind | 0600, 0); }; };
    // A file to which something happens between the listing and its opening, which then fails or does not.
    const auto spoilt = [&](const std::function<bool()>& fails) {
        return [=, this] {
            documents.File("b.tif", three);
            disk.fails = [=](const std::string& path) { return path == odd && fails(); };
        };
    };
    using Case = std::tuple<const char*, std::function<void()>, const char*>;
    const Case cases[] = {{"damaged", file("MM\0*damaged"s), "0"},
                          {"no TIFF", file("damaged"), "12"},
                          {"empty", file(""), "12"},
                          {"cut in the second page", file(three.substr(0, three.size() / 2)), "1"},
                          {"no page", file("II*\0\0\0\0\0"s), "0"},
                          {"loops", file(LoopingTiffBytes(4)), "4"},
                          {"FIFO", node(S_IFIFO), "12"},
                          {"socket", node(S_IFSOCK), "12"},
                          {"endless device", link("/dev/zero"), "12"},
                          {"device", link("/dev/null"), "12"},
                          {"link to nowhere", link("nowhere"), "12"},
                          {"link to itself", link("b.tif"), "12"},
                          {"link to a folder", link("."), "12"},
                          {"link to a file", link("c.tif"), "3"},
                          {"unreadable", spoilt([] { return true; }), "12"},
                          {"vanishes", spoilt([&] { return !fs::remove(odd); }), "12"},
                          {"turns into a FIFO",
                           spoilt([&] { return !fs::remove(odd) || mkfifo(odd.c_str(), 0600) != 0; }), "12"}};
    documents.File("a.tif", TiffBytes(12));
    documents.File("c.tif", three);
    Start([&] {
        for (const auto& [name, make, count] : cases)
            for (const bool subfolders : {true, false}) {
                SCOPED_TRACE(name + std::string(subfolders ? " recursive" : " flat"));
                make();
                Scan(documents.Path(), subfolders);
                EXPECT_EQ(Rows(), (Lines{"a.tif|12|.|tif", "b.tif|"s + count + "|.|tif", "c.tif|3|.|tif"}));
                EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|3 file(s)|All,tif");
                disk.fails = nullptr;
                fs::remove(odd);
            }
    });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(HostileTest, AnyNameIsShownSavedAndReadBackByteForByte) {
    const std::set<std::string> names = {"it's.tif",
                                         "\"double\".tif",
                                         "'); drop table preferences; --.tif",
                                         "line\nbreak\r.tif",
                                         "tab\tand\x01.tif",
                                         "\xFF\xFE\xC3.tif",
                                         "\xD7\xA9\xD7\x9C\xE2\x80\xAE\xD7\x9D.tif",
                                         " %s&?*\\ .tif",
                                         std::string(251, 'x') + ".tif",
                                         std::string(125, '\xE9') + "\xE2\x82\xAC.TIF"};
    for (const std::string& name : names)
        for (const char* folder : {"", "a'\"\n\xFF/"}) documents.File(folder + name, TiffBytes(1));
    Start([&] {
        const Listbox& list = Main().Listbox1;
        for (const bool subfolders : {false, true}) {
            Scan(documents.Path(), subfolders);
            std::set<std::string> shown;
            for (std::int32_t row = 0; row < list.ListCount(); ++row) {
                shown.insert(list.Cell(row, 1));
                EXPECT_TRUE(GetFolderItem(list.Cell(row, 3))->Child(list.Cell(row, 1))->Exists());
            }
            EXPECT_EQ(shown, names);
            EXPECT_EQ(Rows().size(), names.size() * (subfolders ? 2 : 1));
            EXPECT_EQ(Main().words->Value("tif")->count, list.ListCount());
        }
        EXPECT_EQ(SavedRows(), Rows());
    });
}

TEST_F(HostileTest, AFolderThatFailsIsPassedOverAndLinksGoNotRoundInCircles) {
    for (const char* name : {"a/a.tif", "b/b.tif", "b/c/c.tif", "d.tif"}) documents.File(name, TiffBytes(1));
    fs::create_directory_symlink(documents.Path(), documents / "a/round");
    fs::create_directory_symlink("..", documents / "a/round.tif");
    using Fails = std::function<bool(const std::string&)>;
    const std::string b = documents / "b";
    Start([&] {
        for (const Fails& fails :
             {Fails([&](const auto& path) { return path == b; }),
              Fails([&](const auto& path) { return path == b && fs::remove_all(b) == 0; })}) {
            disk.fails = fails;
            Scan(documents.Path(), true);
            EXPECT_EQ(Rows(), (Lines{"a.tif|1|a|tif", "round.tif|1|a|tif", "d.tif|1|.|tif"}));
        }
        disk.fails = [&](const auto& path) { return path == documents.Path(); };
        Scan(documents.Path(), true);
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|0 file(s)|All");
    });
    EXPECT_EQ(desktop.messages, Lines());
}

TEST_F(HostileTest, AThousandNestedFolders) {
    const std::string tiff = TiffBytes(2);
    Lines rows;
    std::string path = ".";
    const fs::path before = fs::current_path();
    fs::current_path(documents.Path());
    for (int depth = 0; depth <= 1000; ++depth) {
        std::ofstream("z.tif") << tiff;
        rows.insert(rows.begin(), "z.tif|2|" + path + "|tif");
        fs::create_directory("a folder among many");
        fs::current_path("a folder among many");
        path = (depth == 0 ? "" : path + "/") + "a folder among many";
    }
    fs::current_path(before);
    Start([&] {
        Scan(documents.Path(), true);
        EXPECT_TRUE(Rows() == rows);
        EXPECT_TRUE(SavedRows() == rows);
        EXPECT_EQ(Texts(), "Varnith - Testix - Finished|.|1001 file(s)|All,tif");
    });
}

}  // namespace varnith::test
