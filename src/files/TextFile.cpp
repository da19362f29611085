#include "files/TextFile.h"

#include "common/EightBitText.h"
#include "common/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm {
namespace {

constexpr mode_t readableAndWritable = 0666;

} // namespace

bool TextFileWriter::Create(const std::string &newPath) {
    Close();
    path = newPath;
    length = 0;
    error.clear();
    // O_NONBLOCK: opening a FIFO must not hang. O_APPEND: behind what others did to the file.
    descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC | O_NONBLOCK,
             readableAndWritable);
    return IsOpen() || Fail();
}

bool TextFileWriter::WriteLine(std::string_view utf8) {
    bytes.clear();
    AppendWindows1252(bytes, utf8);
    bytes.append("\r\n");
    const auto done = static_cast<long>(WriteAll(descriptor, bytes));
    if (done == static_cast<long>(bytes.size())) {
        length += done;
        return true;
    }
    Fail();
    // The place behind the last write, which need not be `length`.
    const long end = done > 0 ? lseek(descriptor, 0, SEEK_CUR) : -1;
    if (end >= done && ftruncate(descriptor, end - done) == 0) {
        lseek(descriptor, end - done, SEEK_SET);
    }
    return false;
}

bool TextFileWriter::IsIntact() {
    struct stat opened {};
    struct stat there {};
    if (fstat(descriptor, &opened) != 0) {
        return Fail();
    }
    if (!S_ISREG(opened.st_mode)) {
        return true;
    }
    if (stat(path.c_str(), &there) != 0) {
        return Fail();
    }
    if (there.st_dev != opened.st_dev || there.st_ino != opened.st_ino) {
        error = "the file was replaced by another program";
        return false;
    }
    if (opened.st_size < length) {
        error = "the file was shortened by another program";
        return false;
    }
    return true;
}

bool TextFileWriter::Close() {
    const bool closed = !IsOpen() || close(descriptor) == 0;
    descriptor = -1;
    return closed || Fail();
}

bool TextFileWriter::Fail() {
    error = std::strerror(errno);
    return false;
}

bool SkipPast(std::istream &file, char character) {
    return file.ignore(std::numeric_limits<std::streamsize>::max(), character).good();
}

} // namespace ztm
