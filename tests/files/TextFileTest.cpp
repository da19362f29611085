#include "files/TextFile.h"

#include "common/RegularFile.h"

#include "support/TemporaryFile.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace ztm {
namespace {

using test::BytesOf;
using test::FileSizeLimit;
using testing::IsEmpty;
using testing::Not;

class TextFileTest : public testing::Test {
protected:
    std::string Written(std::string_view utf8) {
        TextFileWriter file;
        EXPECT_TRUE(file.Create(folder.Path("written")) && file.Write(utf8) && file.Close());
        return BytesOf(folder.Path("written"));
    }

    test::TemporaryFolder folder;
};

TEST_F(TextFileTest, CharactersBecomeBytesOfTheCodePage) {
    const struct {
        const char *utf8;
        const char *bytes;
    } cases[] = {
        {"25.38°C\t", "25.38\xB0"
                      "C\t"},
        {"ÿ¡é", "\xFF\xA1\xE9"},
        {"€‚Ÿ™", "\x80\x82\x9F\x99"},
        {"a\u0085b", "a?b"},   // a control character that the page has no byte for
        {"Ω 温 😀.", "? ? ?."}, // two, three and four bytes
        {"a\xFFz", "a?z"},     // no UTF-8
        {"a\xE6\xB8", "a?"},   // cut short
        {"\xC3z", "?z"},
    };
    for (const auto &[utf8, bytes] : cases) {
        EXPECT_EQ(Written(utf8), bytes) << utf8;
    }
}

TEST_F(TextFileTest, CreatesOrReplacesAndEndsLinesWithCrLf) {
    const std::string path = folder.Put("file", "what was there before, and longer");
    TextFileWriter file;
    ASSERT_TRUE(file.Create(path));
    ASSERT_TRUE(file.WriteLine("one"));
    EXPECT_EQ(BytesOf(path), "one\r\n") << "before the file is closed";
    ASSERT_TRUE(file.WriteLine("") && file.Write("2"));
    EXPECT_EQ(BytesOf(path), "one\r\n\r\n2");
    EXPECT_TRUE(file.Create(folder.Path("other")));
    EXPECT_EQ(BytesOf(path), "one\r\n\r\n2");
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

TEST_F(TextFileTest, SkipsPastACharacterHoweverFarItIs) {
    const std::string far(150'000, '.');
    std::ifstream file = OpenRegularFile(folder.Put("file", far + "x1" + far + "xx"));
    EXPECT_TRUE(SkipPast(file, 'x'));
    EXPECT_EQ(file.peek(), '1');
    EXPECT_TRUE(SkipPast(file, 'x') && SkipPast(file, 'x')) << "the last character as well";
    EXPECT_FALSE(SkipPast(file, 'x'));
}

TEST_F(TextFileTest, OpensOnlyFilesThatEnd) {
    EXPECT_TRUE(OpenRegularFile(folder.Put("file", "")).is_open());
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    for (const std::string &path :
         {folder.Path("missing"), folder.Path(""), std::string("/dev/zero"), folder.Path("pipe")}) {
        EXPECT_FALSE(OpenRegularFile(path).is_open()) << path << ", without waiting for a writer";
    }
}

} // namespace
} // namespace ztm
