#include "files/TextFile.h"

#include "common/EightBitText.h"
#include "common/WholeFile.h"
#include "support/TemporaryFile.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <functional>
#include <sys/stat.h>

namespace ztm {
namespace {

using test::BytesOf;
using test::FileSizeLimit;
using testing::IsEmpty;
using testing::Not;

class TextFileTest : public testing::Test {
protected:
    test::TemporaryFolder folder;
};

TEST_F(TextFileTest, CharactersBecomeBytesOfTheCodePage) {
    const struct {
        const char *utf8;
        const char *bytes;
        bool hasAll;
    } cases[] = {
        {"25.38°C?\t",
         "25.38\xB0"
         "C?\t",
         true},
        {"ÿ¡é", "\xFF\xA1\xE9", true},
        {"€‚Ÿ™", "\x80\x82\x9F\x99", true},
        {"a\u0085b", "a?b", false},   // a control character that the page has no byte for
        {"Ω 温 😀.", "? ? ?.", false}, // two, three and four bytes
        {"a\xFFz", "a?z", false},     // no UTF-8
        {"a\xE6\xB8", "a?", false},   // cut short
        {"\xC3z", "?z", false},
    };
    for (const auto &[utf8, bytes, hasAll] : cases) {
        std::string written;
        EXPECT_EQ(AppendWindows1252(written, utf8), hasAll) << utf8;
        EXPECT_EQ(written, bytes);
    }
}

TEST_F(TextFileTest, CreatesOrReplacesAndEndsLinesWithCrLf) {
    const std::string path = folder.Put("file", "what was there before, and longer");
    TextFileWriter file;
    ASSERT_TRUE(file.Create(path));
    ASSERT_TRUE(file.WriteLine("one"));
    EXPECT_EQ(BytesOf(path), "one\r\n") << "before the file is closed";
    ASSERT_TRUE(file.WriteLine("") && file.WriteLine("2"));
    EXPECT_TRUE(file.Create(folder.Path("other")));
    EXPECT_EQ(BytesOf(path), "one\r\n\r\n2\r\n");
}

TEST_F(TextFileTest, FailuresAreNoticedWithTheirReason) {
    TextFileWriter file;
    EXPECT_FALSE(file.Create(folder.Path("missing/file")));
    EXPECT_EQ(file.Error(), "No such file or directory");
    EXPECT_FALSE(file.IsOpen());
    ASSERT_TRUE(file.Create("/dev/full"));
    EXPECT_FALSE(file.WriteLine("lost"));
    EXPECT_EQ(file.Error(), "No space left on device");
}

TEST_F(TextFileTest, ALineThatDoesNotFitIsTakenBack) {
    const FileSizeLimit limit(12);
    const std::string path = folder.Path("file");
    TextFileWriter file;
    ASSERT_TRUE(file.Create(path));
    EXPECT_TRUE(file.WriteLine("12345"));
    EXPECT_FALSE(file.WriteLine("6789012"));
    EXPECT_THAT(file.Error(), Not(IsEmpty()));
    EXPECT_EQ(BytesOf(path), "12345\r\n") << "no piece of the second line";
    EXPECT_TRUE(file.WriteLine("abc"));
    EXPECT_EQ(BytesOf(path), "12345\r\nabc\r\n");
}

TEST_F(TextFileTest, WhatOthersDoToTheFileIsNoticed) {
    const std::string path = folder.Path("file");
    const struct {
        std::function<void()> deed;
        const char *reason;
    } cases[] = {
        {[&] { std::ofstream(path, std::ios::app) << "more"; }, ""},
        {[&] { std::filesystem::remove(path); }, "No such file or directory"},
        {[&] { std::filesystem::rename(folder.Put("other", "three\r\n"), path); },
         "the file was replaced by another program"},
        {[&] { std::filesystem::resize_file(path, 0); },
         "the file was shortened by another program"},
    };
    for (const auto &[deed, reason] : cases) {
        TextFileWriter file;
        ASSERT_TRUE(file.Create(path) && file.WriteLine("one") && file.IsIntact());
        deed();
        EXPECT_TRUE(file.WriteLine("2"));
        EXPECT_EQ(file.IsIntact(), *reason == '\0');
        EXPECT_EQ(file.Error(), reason);
    }
    EXPECT_EQ(BytesOf(path), "2\r\n") << "without a hole in front";
}

TEST_F(TextFileTest, ReadsOnlyFilesThatEnd) {
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    std::filesystem::resize_file(folder.Put("long", ""), (1 << 20) + 1);
    const std::pair<std::string, const char *> cases[] = {
        {folder.Path("missing"), "No such file or directory"},
        {folder.Path("pipe"), "this is no regular file"},
        {folder.Path(""), "this is no regular file"},
        {"/dev/zero", "this is no regular file"},
        {folder.Path("long"), "the file is larger than 1 MiB"},
    };
    for (const auto &[path, reason] : cases) {
        std::string whyNot;
        EXPECT_FALSE(ReadFile(path, whyNot));
        EXPECT_EQ(whyNot, reason) << path;
    }
    std::filesystem::resize_file(folder.Path("long"), 1 << 20);
    std::string whyNot;
    EXPECT_EQ(ReadFile(folder.Path("long"), whyNot).value_or("").size(), 1U << 20U);
}

TEST_F(TextFileTest, AFileIsSavedAsAWholeOrStaysAsItWas) {
    const std::string path = folder.Put("file", "old");
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("file", folder.Path("link"));
    std::filesystem::create_symlink("new", folder.Path("dangling"));
    {
        const FileSizeLimit limit(5);
        EXPECT_EQ(SaveFile(folder.Path("link"), "too long"), "File too large");
        EXPECT_EQ(SaveFile(folder.Path("new"), "too long"), "File too large");
    }
    EXPECT_EQ(BytesOf(path), "old");
    EXPECT_EQ(SaveFile(folder.Path("link"), "changed"), "");
    EXPECT_EQ(SaveFile(folder.Path("dangling"), "made"), "");
    EXPECT_EQ(BytesOf(path) + BytesOf(folder.Path("new")), "changedmade");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link")));
    const auto left = std::filesystem::directory_iterator(folder.Path(""));
    EXPECT_EQ(std::distance(begin(left), end(left)), 4);

    EXPECT_EQ(SaveFile(folder.Path("missing/file"), "x"), "No such file or directory");
    EXPECT_EQ(SaveFile(folder.Path(""), "x"), "Is a directory");
    EXPECT_EQ(SaveFile("/dev/full", "x"), "No space left on device");
    EXPECT_EQ(SaveFile("/dev/null", "x"), "");
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    const int reader = open(folder.Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    char received = 0;
    EXPECT_EQ(SaveFile(folder.Path("pipe"), "x"), "");
    EXPECT_EQ(read(reader, &received, 1), 1);
    close(reader);
}

} // namespace
} // namespace ztm
