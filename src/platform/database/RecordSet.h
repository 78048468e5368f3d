#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Ref.h"

namespace varnith {

// The rows that a select has given, each field as text; NULL is an empty text. It holds the rows themselves,
// so it has no hold on the file, and what happens to the table later doesn't show in it. They are kept one
// behind the other in large pieces, and are gone through once, from the first.
class RecordSet : public RefCounted {
  public:
    // The number of rows, those that were passed included.
    std::int32_t RecordCount() const { return record_count_; }

    // Whether the last row has been passed. (In capitals, C's standard library has the name for itself.)
    bool Eof() const { return row_ >= record_count_; }

    // Goes on to the next row.
    void MoveNext();

    // A field of the current row: by its column's position, from 1, or by its column's name. Empty at the
    // end. Raises NilObjectException for a column that isn't there.
    std::string IdxField(std::int32_t position) const;
    std::string Field(const std::string& name) const;

    // Lets go of the rows; the record set is at its end then.
    void Close();

  private:
    friend class Database;

    // The building, in this order: all columns, each row with its fields, and then the first row is current.
    void AddColumn(const std::string& name) { columns_.push_back(name); }
    void AddRow();
    void AddField(std::string_view text);
    void MoveFirst() { ReadRow(); }

    void ReadRow();

    std::vector<std::string> columns_;
    std::deque<std::string> pieces_;  // from the current row's on; each field is its length and its bytes
    std::size_t next_ = 0;            // where the row after the current one begins in the first piece
    std::vector<std::string_view> fields_;  // of the current row
    std::int32_t row_ = 0;
    std::int32_t record_count_ = 0;
};

}  // namespace varnith
