#include <cassert>

#include <fuzzer/FuzzedDataProvider.h>

#include "helpers/TemporaryFolder.h"
#include "platform/files/FolderListing.h"

using namespace varnith;

// A name is hidden if it begins with a dot or is a line of ".hidden", whatever else that file contains.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::TemporaryFolder folder;
    static const std::string listed = folder.File("a b.tif");
    FuzzedDataProvider input(data, size);
    const std::string name = input.ConsumeRandomLengthString();
    const std::string lines = input.ConsumeRemainingBytesAsString();
    folder.File(".hidden", lines);
    const auto is_hidden = [&lines](const std::string& entry) {
        const bool is_line = entry.find('\n') == entry.npos;
        return entry.starts_with('.') ||
               (is_line && ("\n" + lines + "\n").find("\n" + entry + "\n") != entry.npos);
    };
    if (!name.empty()) assert(IsVisibleEntry(folder.Path(), name) == !is_hidden(name));
    const Listing listing(std::make_shared<OpenFolder>(folder.Path()));
    assert(listing.Size() == 2 && !listing[0].visible && listing[1].visible == !is_hidden("a b.tif"));
    return 0;
}
