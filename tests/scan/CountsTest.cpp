#include <algorithm>

#include "support/ProgramTest.h"

namespace varnith::test {

using CountsTest = ProgramTest;

// A name with a slash at its end is a folder that holds in.tif.
TEST_F(CountsTest, EachScanTakesWhatItsRuleSays) {
    const std::string tiff = TiffBytes(2);
    using Case = std::tuple<std::string, const char*, const char*>;
    const Case cases[] = {{"a.tif", "a.tif|2|.|tif", "a.tif|2|.|tif"},
                          {"a.tiff", "a.tiff|2|.|tiff", "a.tiff|2|.|tiff"},
                          {"A.TIFF", "A.TIFF|2|.|TIFF", "A.TIFF|2|.|TIFF"},
                          {"a.tIf", "a.tIf|2|.|tIf", "a.tIf|2|.|tIf"},
                          {"a.b.c.tif", "a.b.c.tif|2|.|tif", "a.b.c.tif|2|.|tif"},
                          {"listed.tif", "", "listed.tif|2|.|tif"},
                          {"listed.tiff", "", ""},
                          {".a.tif", "", ".a.tif|2|.|tif"},
                          {".a.tiff", "", ""},
                          {".tif", "", ".tif|2|.|tif"},
                          {"tif", "", "tif|2|.|tif"},
                          {"TIFF", "TIFF|2|.|TIFF", ""},
                          {"a.tif.", "", ""},
                          {"atif", "", ""},
                          {"a.pdf", "", ""},
                          {"scans.tif/", "in.tif|2|scans.tif|tif", "scans.tif|0|.|tif"},
                          {"scans.tiff/", "in.tif|2|scans.tiff|tif", "scans.tiff|0|.|tiff"},
                          {"tif/", "in.tif|2|tif|tif", "tif|0|.|tif"},
                          {"sub/", "in.tif|2|sub|tif", ""},
                          {".sub/sub/", "", ""},
                          {"Some.app/Contents/", "in.tif|2|Some.app/Contents|tif", ""}};
    documents.File(".hidden", "listed.tif\nlisted.tiff\n");
    const auto taken = [&](const std::string& path) {
        return path.starts_with(documents.Path()) && !path.ends_with("/.hidden");
    };
    Start([&] {
        for (const auto& [name, recursive, flat] : cases) {
            documents.File(name + (name.ends_with('/') ? "in.tif" : ""), tiff);
            for (const bool subfolders : {true, false}) {
                SCOPED_TRACE(name + (subfolders ? " recursive" : " flat"));
                disk.opened.clear();
                Scan(documents.Path(), subfolders);
                const std::string row = subfolders ? recursive : flat;
                EXPECT_EQ(Rows(), row.empty() ? Lines() : Lines{row});
                EXPECT_EQ(std::count_if(disk.opened.begin(), disk.opened.end(), taken), row.empty() ? 0 : 1)
                    << "only what is taken is opened, and once";
            }
            std::filesystem::remove_all(documents / name.substr(0, name.find('/')));
        }
    });
}

TEST_F(CountsTest, AFileThatCannotBeOpenedKeepsTheCountOfTheFolderSoFar) {
    for (const char* empty : {"1.tif", "4/1.tif", "4/3/1.tiff", "4/4.tif", "5.tif", "8.tif"})
        documents.File(empty);
    for (const auto& [name, pages] : {std::pair("2.tif", 12), {"4/2.tif", 5}, {"6.tif", 3}, {"10.tif", 1}})
        documents.File(name, TiffBytes(pages));
    documents.File("3.TIF", "damaged");
    documents.File("7.tif", TiffBytes(4).substr(0, 8));
    documents.Folder("11.tif");
    const Lines tree = {"1.tif|0|.|tif", "2.tif|12|.|tif",    "3.TIF|12|.|TIF", "1.tif|0|4|tif",
                        "2.tif|5|4|tif", "1.tiff|0|4/3|tiff", "4.tif|5|4|tif",  "5.tif|12|.|tif",
                        "6.tif|3|.|tif", "7.tif|0|.|tif",     "8.tif|0|.|tif",  "10.tif|1|.|tif"};
    Lines top = tree;
    top.erase(top.begin() + 3, top.begin() + 7);
    top.push_back("11.tif|1|.|tif");
    Start([&] {
        for (const auto& [rows, tags] :
             {std::pair(tree, Lines{"1", "2", "3", "1", "2", "1", "2", "3", "4", "5", "6", "7"}),
              {top, Lines{"1", "2", "3", "4", "5", "6", "7", "8", "9"}}}) {
            Scan(documents.Path(), rows == tree);
            EXPECT_EQ(Rows(), rows);
            EXPECT_EQ(Tags(), tags) << "a walk numbers each folder from 1, and goes on above from there";
            EXPECT_EQ(Main().Listbox1.CellType(7, 0), Listbox::TypeCheckBox);
        }
    });
}

}  // namespace varnith::test
