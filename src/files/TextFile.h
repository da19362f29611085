#pragma once

#include <istream>
#include <string>
#include <string_view>

namespace ztm {

/// Writes a text file line by line, as 8-bit characters (Windows-1252) with CR LF line ends. Every
/// line has reached the operating system when its write returns, so nothing is lost if the process
/// dies. After a failure Error says why.
class TextFileWriter {
public:
    TextFileWriter() = default;
    ~TextFileWriter() { Close(); }
    TextFileWriter(const TextFileWriter &) = delete;
    TextFileWriter &operator=(const TextFileWriter &) = delete;

    /// Creates the file, or empties an existing one.
    bool Create(const std::string &path);

    bool IsOpen() const { return descriptor >= 0; }

    /// Appends a UTF-8 text and a line end to the file completely or, on failure, not at all: a
    /// partial write is undone if the file can be truncated.
    bool WriteLine(std::string_view utf8);

    /// False if the path of Create no longer leads to this file, or the file is shorter than what
    /// was written. Always true of what is no regular file.
    bool IsIntact();

    /// False if the system reports that written data could not be kept.
    bool Close();

    /// How many bytes have been written since Create.
    long Length() const { return length; }

    /// The reason of the last failure, for example "No space left on device".
    const std::string &Error() const { return error; }

private:
    bool Fail();

    int descriptor = -1;
    std::string path;
    long length = 0;
    std::string bytes;
    std::string error;
};

/// Skips everything up to and including the next such character; false if there is none before the
/// end of the file.
bool SkipPast(std::istream &file, char character);

} // namespace ztm
