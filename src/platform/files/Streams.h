#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/base/Ref.h"
#include "platform/files/FileSystem.h"

namespace varnith {

// A file that is written sequentially. Writes are buffered, so that small ones are cheap. Errors are not
// reported to the caller; after an error nothing more is written.
class OutputFile {
  public:
    // Starts a new file, or a replacement of an existing one. The bytes go to a temporary file in the same
    // folder, which gets the old file's permissions. Close renames it over the old file. If not everything
    // could be written, or if the object is destroyed without Close, the old file stays as it is. If the path
    // is a link, the file that it leads to is replaced, and the link stays.
    // Two kinds of files are written in place instead: those that aren't regular, and those that this user
    // may write but not replace, because the folder forbids it. The latter are emptied at once.
    // The result is empty (false) if the file can't be created.
    static OutputFile Anew(const std::string& path);

    // Opens an existing file to overwrite it in place, from its start. Destroying the object closes it. The
    // result is empty (false) if the file can't be opened.
    static OutputFile Over(const std::string& path);

    OutputFile(OutputFile&&) noexcept = default;
    ~OutputFile();

    explicit operator bool() const { return static_cast<bool>(file_); }

    void Write(std::string_view bytes);

    // Passes everything written so far to the file system.
    void Flush();

    // Flushes, renames a file of Anew into its place, and closes. Later writes have no effect.
    void Close();

  private:
    explicit OutputFile(FileDescriptor file) : file_(std::move(file)) {}
    void TakePlace();

    FileDescriptor file_;
    std::string waiting_;  // the buffer
    bool whole_ = true;    // no write has failed so far
    // For a file that is renamed at Close: its temporary path and its final one. Else both are empty.
    std::string draft_;
    std::string target_;
};

// A text file that is being written. The text's bytes are written unchanged, as UTF-8.
class TextOutputStream : public RefCounted {
  public:
    explicit TextOutputStream(OutputFile file) : file_(std::move(file)) {}

    // Writes a text and ends the line with a line feed.
    void WriteLine(std::string_view text);

    void Close() { file_.Close(); }

  private:
    OutputFile file_;
};

// A binary file that is being written.
class BinaryStream : public RefCounted {
  public:
    explicit BinaryStream(OutputFile file) : file_(std::move(file)) {}

    void Write(std::string_view bytes) { file_.Write(bytes); }
    void Flush() { file_.Flush(); }
    void Close() { file_.Close(); }

  private:
    OutputFile file_;
};

}  // namespace varnith
