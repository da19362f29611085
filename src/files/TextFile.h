#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace ztm {

/// An open file, closed when it goes.
class FileHandle {
public:
    FileHandle() = default;
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle &) = delete;
    FileHandle &operator=(const FileHandle &) = delete;

    /// Opens a path with the flags of open(2), after closing what was open; false, and errno
    /// says why, when that fails.
    bool Open(const std::string &path, int flags);

    /// False when the system reports that what was written could not be kept.
    bool Close();

    bool IsOpen() const { return descriptor >= 0; }
    int Descriptor() const { return descriptor; }

private:
    int descriptor = -1;
};

/// Writes a text file of 8-bit characters (Windows-1252) with CR LF line ends. Every write has
/// reached the operating system when it returns, so that nothing is lost with the process.
/// After a failure Error says why.
class TextFileWriter {
public:
    /// Creates the file, or empties the one of that name.
    bool Create(const std::string &path);

    bool IsOpen() const { return file.IsOpen(); }

    /// Writes a UTF-8 text wholly or, when that fails, not at all: what got through of it is
    /// taken back where the file can be cut.
    bool Write(std::string_view utf8);

    /// Write, with a line end.
    bool WriteLine(std::string_view utf8);

    bool Close();

    /// The system's reason for the last failure, for example "No space left on device".
    const std::string &Error() const { return error; }

private:
    bool Fail();
    bool WriteBytes();

    FileHandle file;
    long length = 0; // of what has been written
    std::string bytes;
    std::string error;
};

/// Reads a text file of 8-bit characters one after the other, from a buffer of fixed size.
/// Only regular files can be opened: others might never end.
class TextFileReader {
public:
    bool Open(const std::string &path);

    /// The next character; none at the end of the file or after a failure.
    std::optional<char> Next() {
        if (position == filled && !Fill()) {
            return std::nullopt;
        }
        return buffer[position++];
    }

    /// Passes everything up to and including the next such character; false when there is none
    /// before the end of the file.
    bool SkipPast(char character);

    /// Whether there is no further character.
    bool AtEnd() { return position == filled && !Fill(); }

private:
    bool Fill();

    FileHandle file;
    std::array<char, 65536> buffer;
    size_t position = 0;
    size_t filled = 0;
};

} // namespace ztm
