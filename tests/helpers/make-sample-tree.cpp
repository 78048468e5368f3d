#include "helpers/TemporaryFolder.h"

// Makes a small tree of files like those that a scan meets in practice:  make-sample-tree FOLDER
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    using varnith::test::TiffBytes;
    const std::pair<const char*, std::string> files[] = {
        {"contracts/lease.tif", TiffBytes(12)},
        {"contracts/lease, annex.tiff", TiffBytes(3, "wb")},
        {"contracts/signed/2023/Müller & Söhne.tif", TiffBytes(4)},
        {"contracts/signed/2024/Καλημέρα.tif", TiffBytes(6, "wb")},
        {"contracts/signed/2024/договор.TIFF", TiffBytes(9)},
        {"invoices/invoice 1.tif", TiffBytes(1)},
        {"invoices/invoice 2.tif", TiffBytes(2)},
        {"invoices/invoice 10.tif", TiffBytes(1, "wb")},
        {"maps/atlas.tif", TiffBytes(240, "wl8")},
        {"maps/O'Brien \"north\".tiff", TiffBytes(2, "wb8")},
        {"cover.TIF", TiffBytes(1)},
        {".draft.tif", TiffBytes(5)},
        {".cache/page.tif", TiffBytes(1)},
        {"invoices/invoice 3, damaged.tif", "This was a page once."},
        {"invoices/invoice 4.pdf", "%PDF-1.4\n"},
        {"maps/legend.txt", "1 : 25 000\n"},
        {"read me.txt", "Scanned in spring.\n"},
    };
    for (const auto& [name, bytes] : files)
        varnith::test::WriteFile(std::filesystem::path(argv[1]) / name, bytes);
}
