#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/base/Ref.h"
#include "platform/files/FileSystem.h"

namespace varnith {

// A file that is being written, front to back. What is written is collected and goes to disk in large pieces,
// so a write of a few bytes costs little. Errors are not reported: bytes that can't be written are lost.
class OutputFile {
  public:
    explicit OutputFile(FileHandle file) : file_(std::move(file)) {}
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { Close(); }

    void Write(std::string_view bytes);

    // Hands all that was written to the file system.
    void Flush();

    // Flushes and closes. What is written afterwards is lost.
    void Close();

  private:
    FileHandle file_;
    std::string waiting_;
};

// A text file that is being written, as UTF-8, just as the text comes. Dropping it closes it.
class TextOutputStream : public RefCounted {
  public:
    explicit TextOutputStream(FileHandle file) : file_(std::move(file)) {}

    // Writes a text and ends the line with a line feed.
    void WriteLine(std::string_view text);

    void Close() { file_.Close(); }

  private:
    OutputFile file_;
};

// A file of bytes that is being written. Dropping it closes it.
class BinaryStream : public RefCounted {
  public:
    explicit BinaryStream(FileHandle file) : file_(std::move(file)) {}

    void Write(std::string_view bytes) { file_.Write(bytes); }
    void Flush() { file_.Flush(); }
    void Close() { file_.Close(); }

  private:
    OutputFile file_;
};

}  // namespace varnith
