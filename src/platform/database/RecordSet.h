#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// The rows that a select has returned. Each field is text; NULL is an empty text. The rows are copies: a
// record set doesn't lock the file, and later changes of the table don't change it. They can be read once,
// from the first to the last. They are stored one after another in large pieces, each freed when its rows
// were read.
class RecordSet : public RefCounted {
  public:
    // The number of all rows, including those already passed.
    std::int32_t RecordCount() const { return record_count_; }

    // Whether the last row has been passed. (EOF is a macro of <cstdio>.)
    bool Eof() const { return row_ >= record_count_; }

    // Moves to the next row. Nothing happens at the end.
    void MoveNext();

    // A field of the current row, by the position of its column, from 1, or by the name of its column, case
    // ignored. Empty at the end. Raises NilObjectException if there is no such column.
    std::string IdxField(std::int32_t position) const;
    std::string Field(const std::string& name) const;

    // Frees the rows and moves to the end.
    void Close();

  private:
    friend class Database;

    // Database fills the record set: first all columns, then each row with its fields, last MoveFirst.
    void AddColumn(const std::string& name) { columns_.push_back(name); }
    void AddRow();
    void AddField(std::string_view text);
    void MoveFirst() { ReadRow(); }

    void ReadRow();

    std::vector<std::string> columns_;
    std::deque<std::string> pieces_;        // from the current row's piece on; fields as length and bytes
    std::size_t next_ = 0;                  // offset in the first piece of the row after the current one
    std::vector<std::string_view> fields_;  // of the current row
    std::int32_t row_ = 0;
    std::int32_t record_count_ = 0;
};

}  // namespace varnith
