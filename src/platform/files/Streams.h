#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/base/Ref.h"
#include "platform/files/FileSystem.h"

namespace varnith {

// A file that is being written, front to back. What is written is collected and goes to disk in large pieces,
// so a write of a few bytes costs little. Errors are not reported: nothing is written after one.
class OutputFile {
  public:
    // Begins a file anew. It grows under another name beside its target and takes the target's place, and its
    // permissions, at Close. What was there stays as it was if not all could be written, and if the object is
    // dropped before. A link stays, and the file that it leads to is replaced.
    // What is no regular file is written as it comes; so is a file that this user may write, in a folder
    // where they may not replace it. That one is emptied at once. Empty if the file can't be created.
    static OutputFile Anew(const std::string& path);

    // Opens a file that exists to write over it in place, from its start on. Dropping it closes it. Empty if
    // it can't be opened.
    static OutputFile Over(const std::string& path);

    OutputFile(OutputFile&&) noexcept = default;
    ~OutputFile();

    explicit operator bool() const { return static_cast<bool>(file_); }

    void Write(std::string_view bytes);

    // Hands all that was written to the file system.
    void Flush();

    // Flushes, puts a file that was begun anew in its place, and closes. What is written afterwards is lost.
    void Close();

  private:
    explicit OutputFile(FileDescriptor file) : file_(std::move(file)) {}
    void TakePlace();

    FileDescriptor file_;
    std::string waiting_;
    bool whole_ = true;  // all has been written so far
    // Of a file that grows beside its target: where it is now, and where it is to be.
    std::string draft_;
    std::string target_;
};

// A text file that is being written, as UTF-8, just as the text comes.
class TextOutputStream : public RefCounted {
  public:
    explicit TextOutputStream(OutputFile file) : file_(std::move(file)) {}

    // Writes a text and ends the line with a line feed.
    void WriteLine(std::string_view text);

    void Close() { file_.Close(); }

  private:
    OutputFile file_;
};

// A file of bytes that is being written.
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
