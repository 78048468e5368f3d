#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace varnith {

// Operations on texts. A text is UTF-8 but may contain file names with any bytes, so every operation keeps
// invalid bytes. A character is a code point; a byte that is not part of valid UTF-8 counts as a character.
// Positions and fields are counted from 1.

// The searching operations, from here to ReplaceAll, ignore case. An empty text is found nowhere.

// The number of fields when a text is split at each separator: "a.b.tif" split at "." has 3, "" has 0.
std::int32_t CountFields(std::string_view text, std::string_view separator);

// The n-th field, from 1. Empty if there is none.
std::string NthField(std::string_view text, std::string_view separator, std::int32_t n);

// The position, in characters, of the first occurrence of `what`, 0 if there is none.
std::int32_t InStr(std::string_view text, std::string_view what);

// The text with each occurrence of `what` replaced. It is searched from the front; occurrences don't overlap,
// and what was put in is not searched.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement);

// LTrim removes the white space at the start of a text, Trim that at its start and end. White space is the
// blank and the characters with the codes 9 to 13.
std::string LTrim(std::string_view text);
std::string Trim(std::string_view text);

// The number of characters.
std::int32_t Len(std::string_view text);

// The characters from a position on: at most `length` of them, or all up to the end. A position below 1
// counts as 1, a length below 0 as 0.
std::string Mid(std::string_view text, std::int32_t start, std::int32_t length);
std::string Mid(std::string_view text, std::int32_t start);

// A number in decimal digits.
std::string Str(std::int64_t number);

// The number at the start of a text, after white space: an optional sign, digits, an optional decimal point
// and decimal exponent. 0 if there is none, infinite if it is too great for a double.
double Val(std::string_view text);

// Converts a number to an integer by dropping its fraction. One out of range gives the nearest integer in
// range, NaN gives 0.
std::int32_t WholeNumber(double number);

// Whether two texts are equal if case is ignored.
bool SameText(std::string_view a, std::string_view b);

// Converts a text to a form that is the same for texts that differ only in case. For keys, not for display.
std::string FoldCase(std::string_view text);

// Appends a sort key for the natural order, which listings and sorted lists use. Comparing the keys of two
// texts byte by byte compares the texts in that order: runs of digits by value, other characters by their
// bytes with ASCII case ignored, and equal texts by their plain bytes. The order is the same in every locale.
// Appending lets a caller store many keys in one string. REQUIRES: the text contains no NUL.
void AppendNaturalKey(std::string& key, std::string_view text);

}  // namespace varnith
