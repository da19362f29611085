#include "common/WholeFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace ztm {
namespace {

constexpr size_t longestFile = size_t{1} << 20U;
constexpr mode_t readableAndWritable = 0666;
constexpr int mostLinks = 40; // the system follows no more

class Descriptor {
public:
    explicit Descriptor(int number) : number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool IsOpen() const { return number >= 0; }
    int Number() const { return number; }
    /// False if the system reports that written data could not be kept.
    bool Close() { return !IsOpen() || close(std::exchange(number, -1)) == 0; }

private:
    int number;
};

std::string Reason() {
    return std::strerror(errno);
}

/// Where a link leads to in the end, whether or not a file is there.
std::string BehindLinks(std::filesystem::path path) {
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code isNoLink;
        const auto target = std::filesystem::read_symlink(path, isNoLink);
        if (isNoLink) {
            break;
        }
        path = path.parent_path() / target;
    }
    return path;
}

/// Whether the path leads to an opened regular file. Some links cannot be followed by their text:
/// those in /proc to what is open.
bool LeadsTo(const std::string &path, const struct stat &opened) {
    struct stat there {};
    return S_ISREG(opened.st_mode) && lstat(path.c_str(), &there) == 0 &&
           there.st_dev == opened.st_dev && there.st_ino == opened.st_ino;
}

/// Creates a file in the folder of another. Returns its descriptor, and its path in `created`.
int CreateBeside(const std::string &path, std::string &created) {
    static unsigned count = 0;
    const auto folder = std::filesystem::path(path).parent_path();
    int descriptor = -1;
    do {
        created =
            folder / (".ztm-eval-" + std::to_string(getpid()) + '-' + std::to_string(++count));
        descriptor =
            open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readableAndWritable);
    } while (descriptor < 0 && errno == EEXIST);
    return descriptor;
}

/// Gives a file the owner, group and mode of another, as far as the user may.
void TakeAfter(int descriptor, const struct stat &other) {
    constexpr auto asItIs = static_cast<uid_t>(-1);
    [[maybe_unused]] const int results[] = {fchown(descriptor, asItIs, other.st_gid),
                                            fchown(descriptor, other.st_uid, asItIs),
                                            fchmod(descriptor, other.st_mode)};
}

/// Without this the rename itself may not survive the machine's death; nothing is lost then.
void FlushFolderOf(const std::string &path) {
    const auto folder = std::filesystem::path(path).parent_path();
    const Descriptor opened(
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    fsync(opened.Number());
}

std::string WriteInPlace(Descriptor &file, std::string_view bytes) {
    [[maybe_unused]] const bool isEmptied = ftruncate(file.Number(), 0) == 0; // no device can be
    const bool written = WriteAll(file.Number(), bytes) == bytes.size() && file.Close();
    return written ? std::string() : Reason();
}

} // namespace

std::optional<std::string> ReadFile(const std::string &path, std::string &whyNot) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Number(), &status) != 0) {
        whyNot = Reason();
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        whyNot = "this is no regular file";
        return std::nullopt;
    }
    std::string bytes;
    std::array<char, 4096> piece;
    ssize_t count = 1;
    while (count != 0 && bytes.size() <= longestFile) {
        count = read(file.Number(), piece.data(), piece.size());
        if (count > 0) {
            bytes.append(piece.data(), static_cast<size_t>(count));
        } else if (count < 0 && errno != EINTR) {
            whyNot = Reason();
            return std::nullopt;
        }
    }
    if (bytes.size() > longestFile) {
        whyNot = "the file is larger than 1 MiB";
        return std::nullopt;
    }
    return bytes;
}

std::string SaveFile(const std::string &path, std::string_view bytes) {
    // O_NONBLOCK: opening a FIFO must not hang.
    Descriptor existing(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat old {};
    if (existing.IsOpen() ? fstat(existing.Number(), &old) != 0 : errno != ENOENT) {
        return Reason();
    }
    const std::string target = BehindLinks(path);
    if (existing.IsOpen() && !LeadsTo(target, old)) {
        return WriteInPlace(existing, bytes);
    }
    std::string beside;
    Descriptor file(CreateBeside(target, beside));
    if (!file.IsOpen()) {
        const bool isFull = errno == ENOSPC || errno == EDQUOT;
        return existing.IsOpen() && !isFull ? WriteInPlace(existing, bytes) : Reason();
    }
    if (existing.IsOpen()) {
        TakeAfter(file.Number(), old);
    }
    std::string reason;
    if (WriteAll(file.Number(), bytes) < bytes.size() || fsync(file.Number()) != 0 ||
        !file.Close()) {
        reason = Reason();
    } else if (std::rename(beside.c_str(), target.c_str()) == 0) {
        FlushFolderOf(target);
        return {};
    } else if (reason = Reason(); existing.IsOpen()) {
        reason = WriteInPlace(existing, bytes); // another's file in a folder like /tmp
    }
    unlink(beside.c_str());
    return reason;
}

size_t WriteAll(int descriptor, std::string_view bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count >= 0) {
            done += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            break;
        }
    }
    return done;
}

} // namespace ztm
