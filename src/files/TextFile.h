#pragma once

#include <istream>
#include <string>
#include <string_view>

namespace ztm {

/// Writes a text file of 8-bit characters (Windows-1252) with CR LF line ends. Every write has
/// reached the operating system when it returns, so nothing is lost if the process dies. After a
/// failure Error says why.
class TextFileWriter {
public:
    TextFileWriter() = default;
    ~TextFileWriter() { Close(); }
    TextFileWriter(const TextFileWriter &) = delete;
    TextFileWriter &operator=(const TextFileWriter &) = delete;

    /// Creates the file, or empties an existing one.
    bool Create(const std::string &path);

    bool IsOpen() const { return descriptor >= 0; }

    /// Writes a UTF-8 text completely or, on failure, not at all: a partial write is undone if the
    /// file can be truncated.
    bool Write(std::string_view utf8);

    /// Write, with a line end.
    bool WriteLine(std::string_view utf8);

    /// False if the system reports that written data could not be kept.
    bool Close();

    /// The system's reason for the last failure, for example "No space left on device".
    const std::string &Error() const { return error; }

private:
    bool Fail();
    bool WriteBytes();

    int descriptor = -1;
    long length = 0; // of what has been written
    std::string bytes;
    std::string error;
};

/// Skips everything up to and including the next such character; false if there is none before the
/// end of the file.
bool SkipPast(std::istream &file, char character);

} // namespace ztm
