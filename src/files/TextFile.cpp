#include "files/TextFile.h"

#include "common/EightBitText.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace ztm {
namespace {

constexpr mode_t readableAndWritable = 0666;

} // namespace

bool TextFileWriter::Create(const std::string &path) {
    Close();
    length = 0;
    error.clear();
    // O_NONBLOCK: opening a FIFO must not hang.
    descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK,
                      readableAndWritable);
    return IsOpen() || Fail();
}

bool TextFileWriter::Write(std::string_view utf8) {
    bytes.clear();
    AppendWindows1252(bytes, utf8);
    return WriteBytes();
}

bool TextFileWriter::WriteLine(std::string_view utf8) {
    bytes.clear();
    AppendWindows1252(bytes, utf8);
    bytes.append("\r\n");
    return WriteBytes();
}

bool TextFileWriter::Close() {
    const bool closed = !IsOpen() || close(descriptor) == 0;
    descriptor = -1;
    return closed || Fail();
}

bool TextFileWriter::WriteBytes() {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count >= 0) {
            done += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            Fail();
            if (done > 0 && ftruncate(descriptor, length) == 0) {
                lseek(descriptor, length, SEEK_SET);
            }
            return false;
        }
    }
    length += static_cast<long>(done);
    return true;
}

bool TextFileWriter::Fail() {
    error = std::strerror(errno);
    return false;
}

bool SkipPast(std::istream &file, char character) {
    return file.ignore(std::numeric_limits<std::streamsize>::max(), character).good();
}

} // namespace ztm
