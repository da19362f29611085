#include "files/TextFile.h"

#include "common/EightBitText.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm {
namespace {

constexpr mode_t readableAndWritable = 0666;

} // namespace

bool FileHandle::Open(const std::string &path, int flags) {
    Close();
    // Without waiting for whoever might be at the other end of what is no plain file.
    descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, readableAndWritable);
    return IsOpen();
}

bool FileHandle::Close() {
    const bool closed = !IsOpen() || close(descriptor) == 0;
    descriptor = -1;
    return closed;
}

bool TextFileWriter::Create(const std::string &path) {
    length = 0;
    error.clear();
    return file.Open(path, O_WRONLY | O_CREAT | O_TRUNC) || Fail();
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
    return file.Close() || Fail();
}

bool TextFileWriter::WriteBytes() {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(file.Descriptor(), bytes.data() + done, bytes.size() - done);
        if (count >= 0) {
            done += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            Fail();
            if (done > 0 && ftruncate(file.Descriptor(), length) == 0) {
                lseek(file.Descriptor(), length, SEEK_SET);
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

bool TextFileReader::Open(const std::string &path) {
    position = 0;
    filled = 0;
    struct stat status {};
    return file.Open(path, O_RDONLY) && fstat(file.Descriptor(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

bool TextFileReader::SkipPast(char character) {
    while (!AtEnd()) {
        const void *found = std::memchr(&buffer[position], character, filled - position);
        if (found != nullptr) {
            position = static_cast<size_t>(static_cast<const char *>(found) - buffer.data()) + 1;
            return true;
        }
        position = filled;
    }
    return false;
}

bool TextFileReader::Fill() {
    ssize_t count = -1;
    do {
        count = read(file.Descriptor(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    position = 0;
    filled = count > 0 ? static_cast<size_t>(count) : 0;
    return filled > 0;
}

} // namespace ztm
