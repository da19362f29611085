#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace ztm {

/// Writes a text file of 8-bit characters (Windows-1252) with CR LF line ends. Every write has
/// reached the operating system when it returns, so that nothing is lost with the process.
/// After a failure Error says why.
class TextFileWriter {
public:
    TextFileWriter() = default;
    ~TextFileWriter() { Close(); }
    TextFileWriter(const TextFileWriter &) = delete;
    TextFileWriter &operator=(const TextFileWriter &) = delete;

    /// Creates the file, or empties the one of that name.
    bool Create(const std::string &path);

    bool IsOpen() const { return descriptor >= 0; }

    /// Writes a UTF-8 text wholly or, when that fails, not at all: what got through of it is
    /// taken back where the file can be cut.
    bool Write(std::string_view utf8);

    /// Write, with a line end.
    bool WriteLine(std::string_view utf8);

    /// False when the system reports that what was written could not be kept.
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

/// Opens a file of 8-bit characters for reading. The stream is not open when that fails or when
/// the file is no regular one: others might block, or never end.
std::ifstream OpenText(const std::string &path);

/// Passes everything up to and including the next such character; false when there is none before
/// the end of the file.
bool SkipPast(std::istream &file, char character);

} // namespace ztm
