#include "app/MainWindow.h"
#include "platform/base/Text.h"
#include "platform/threads/Scheduler.h"
#include "results/Item.h"

namespace varnith {

void MainWindow::ReadList() {
    words = MakeRef<Dictionary<Ref<Item>>>();
    std::int32_t line_number = 1;
    for (std::int32_t row = 0; row <= Listbox1.ListCount() - 1; ++row) {
        AddLine(Listbox1.Cell(row, 4), line_number);
        ++line_number;
        Yield();
    }
    PopupMenu1.DeleteAllRows();
    PopupMenu1.AddRow("All");
    const auto index = words;
    for (std::int32_t i = 0; i < index->Count(); ++i) {
        PopupMenu1.AddRow(index->Key(i));
        Yield();
    }
}

// This is the loop of a text index, in which some characters end a word. In a type none does, so the whole
// line is one word.
void MainWindow::AddLine(const std::string& line, std::int32_t line_number) {
    std::string result;
    const std::int32_t length = Len(line);
    for (std::int32_t i = 1; i <= length; ++i) {
        result += Mid(line, i, 1);
        Yield();
    }
    if (!result.empty()) AddWord(result, line_number);
}

// A single character does not count as a word. No scan takes a file with such a type.
void MainWindow::AddWord(const std::string& type, std::int32_t line_number) {
    if (Len(type) <= 1) return;
    if (words->HasKey(type)) {
        const Ref<Item> item = words->Value(type);
        ++item->count;
        item->pos.push_back(line_number);
        words->SetValue(type, item);
    } else {
        const auto item = MakeRef<Item>();
        item->count = 1;
        item->pos.push_back(line_number);
        words->SetValue(type, item);
    }
}

}  // namespace varnith
