#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace varnith {

// The text operations of the program. A text is UTF-8, but a file name in it may hold any bytes, and no
// operation here changes a byte that it was not asked to change. Positions and fields count from 1.
// A character is a code point; a byte that is no part of valid UTF-8 counts as a character of its own.

// Searching, for separators too, ignores case.

// The number of pieces when the text is cut at each separator: "a.b.tif" cut at "." has 3, "" has 0.
std::int32_t CountFields(std::string_view text, std::string_view separator);

// The n-th of those pieces, from 1; empty if there are fewer.
std::string NthField(std::string_view text, std::string_view separator, std::int32_t n);

// The position of the first occurrence of a text in another, 0 if there is none.
std::int32_t InStr(std::string_view text, std::string_view what);

// The text with each occurrence of `what` replaced, from the front, none of them overlapping.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement);

// The text without the white space at its front; Trim takes off that at its end too. White space is the
// blank and the characters with codes 9 to 13.
std::string LTrim(std::string_view text);
std::string Trim(std::string_view text);

// The number of characters.
std::int32_t Len(std::string_view text);

// The characters from a position on, at most `length` of them; the second form goes to the end.
std::string Mid(std::string_view text, std::int32_t start, std::int32_t length);
std::string Mid(std::string_view text, std::int32_t start);

// A number as plain decimal text.
std::string Str(std::int64_t number);

// The number at the start of a text, behind white space: digits with a sign, a decimal point and a decimal
// exponent at most. 0 if there is none; one too great for a double is infinite.
double Val(std::string_view text);

// A number with its fraction cut off, as an integer; one that does not fit becomes the nearest that does.
std::int32_t WholeNumber(double number);

// Whether two texts are equal without regard to case.
bool SameText(std::string_view a, std::string_view b);

// The text in the form in which texts that differ only in case are the same bytes. For keys, not for show.
std::string FoldCase(std::string_view text);

// A key for the natural order, in which listings and sorted lists stand: runs of digits by their value, all
// else by its bytes with ASCII case ignored, the bytes as they are as the tie-break; the same in every
// locale. Texts are in natural order when their keys are in the order of their bytes. Appends the key to a
// text, in which many keys may lie one after another. REQUIRES: the text holds no NUL.
void AppendNaturalKey(std::string& key, std::string_view text);

}  // namespace varnith
