// Files on disk.

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

constexpr unsigned long ACCESS_DENIED = 5;

class Receiver final : public IProgress
{
   public:
    void onProgress(double percent) override { percents.push_back(percent); }
    void onItem(const std::string& name) override { items.push_back(name); }

    std::vector<double> percents;
    std::vector<std::string> items;
};

TEST(FileOperations, CopiesUnlessItMayNotReplace)
{
    const TempFolder temp;
    temp.write("a.txt", "new");
    temp.write("b.txt", "old");
    temp.makeFolder("folder");
    const auto source = temp.file("a.txt");
    EXPECT_EQ(source->copy(*temp.file("b.txt"), false, nullptr), 18);
    EXPECT_EQ(temp.read("b.txt"), "old");
    EXPECT_EQ(source->copy(*temp.file("b.txt"), true, nullptr), 0);
    EXPECT_EQ(temp.read("b.txt"), "new");
    EXPECT_EQ(source->copy(temp.file("c.txt")->getFullName(), false, nullptr), 0);
    EXPECT_EQ(temp.read("c.txt"), "new");
    EXPECT_EQ(source->copy(String("a*"), false, nullptr), 1);
    EXPECT_EQ(source->copy(temp.file("d.txt"), false), 0);
    EXPECT_EQ(source->copy(std::shared_ptr<const File>(), false), 1);
    EXPECT_EQ(temp.file("missing")->copy(*temp.file("e.txt"), true, nullptr), 18);
    EXPECT_EQ(source->copy(*temp.file("no/where"), true, nullptr), 18);

    const auto copy = source->copy(*temp.directory("folder"), false, nullptr);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getFullName(), temp.file("folder/a.txt")->getFullName());
    EXPECT_EQ(source->copy(*temp.directory("folder"), false, nullptr), nullptr);
    EXPECT_EQ(temp.file("folder/x")->copyFrom(*source, false, nullptr)->getName(), "x");
    EXPECT_EQ(temp.file("folder/x")->copyFrom(*source, false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("folder"), (Names{"a.txt", "x"}));
}

TEST(FileOperations, NamesTheTargetEvenWhenTheCopyFails)
{
    const TempFolder temp;
    std::shared_ptr<const FileSystemItem> item;
    const auto target = temp.file("target");
    EXPECT_EQ(temp.file("missing")->getImpl()->copy(*target, true, nullptr, item), 18);
    EXPECT_EQ(item->getFullName(), target->getFullName());
    item = nullptr;
    EXPECT_EQ(target->getImpl()->copyFrom(*temp.file("missing"), true, nullptr, item), 18);
    EXPECT_EQ(item->getFullName(), target->getFullName());
}

TEST(FileOperations, KeepsAFileThatIsCopiedOrMovedToItself)
{
    const TempFolder temp;
    temp.write("a.txt");
    const auto file = temp.file("a.txt");
    EXPECT_EQ(file->copy(*temp.file("x/../a.txt"), true, nullptr), 18);
    EXPECT_EQ(temp.read("a.txt"), "content");
    file->move(*file, true);
    EXPECT_EQ(temp.read("a.txt"), "content");
    EXPECT_FALSE(file->move(*file, false));
}

TEST(FileOperations, TellsTheReceiver)
{
    const TempFolder temp;
    temp.write("a.txt", std::string(3 << 20, 'x'));
    temp.write("empty", "");
    const auto receiver = std::make_shared<Receiver>();
    EXPECT_EQ(temp.file("a.txt")->copy(*temp.file("b.txt"), true, receiver), 0);
    EXPECT_EQ(receiver->items, (Names{"a.txt"}));
    ASSERT_FALSE(receiver->percents.empty());
    EXPECT_TRUE(std::ranges::is_sorted(receiver->percents));
    EXPECT_EQ(receiver->percents.back(), 100.0);
    EXPECT_NE(temp.file("b.txt")->copyFrom(*temp.file("a.txt"), true, receiver), nullptr);
    EXPECT_EQ(receiver->items, (Names{"a.txt", "a.txt"}));

    receiver->percents.clear();
    EXPECT_EQ(temp.file("empty")->copy(*temp.file("b.txt"), true, receiver), 0);
    ASSERT_FALSE(receiver->percents.empty());
    EXPECT_TRUE(std::isnan(receiver->percents.back()));
}

TEST(FileOperations, Moves)
{
    const TempFolder temp;
    Messages messages;
    temp.write("a", "new");
    temp.write("b", "old");
    EXPECT_FALSE(temp.file("a")->move(*temp.file("b"), false));
    EXPECT_TRUE(messages.take().empty());
    EXPECT_TRUE(temp.file("a")->move(*temp.file("b"), true));
    EXPECT_EQ(temp.contents(), (Names{"b"}));
    EXPECT_EQ(temp.read("b"), "new");
    EXPECT_TRUE(temp.file("b")->move(temp.file("c")->getFullName(), false));
    EXPECT_FALSE(temp.file("c")->move(String("d*"), false));
    messages.take();

    EXPECT_FALSE(temp.file("missing")->move(*temp.file("c"), true));
    EXPECT_EQ(temp.read("c"), "new");
    const Texts texts = messages.take();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_TRUE(texts[0].startsWith("Failed to move file '" + temp.file("missing")->getFullNameUnicode() +
                                    "' to file '" + temp.file("c")->getFullNameUnicode() + "' because: "));
    EXPECT_FALSE(texts[0].endsWith(": "));
}

TEST(FileOperations, Removes)
{
    const TempFolder temp;
    Messages messages;
    temp.write("a");
    temp.write("b");
    EXPECT_TRUE(temp.file("a")->remove());
    EXPECT_TRUE(temp.file("a")->remove());
    EXPECT_TRUE(messages.take().empty());
    temp.setReadOnly("b", true);
    EXPECT_FALSE(temp.file("b")->remove());
    EXPECT_EQ(messages.take(), Texts{"Failed to delete file '" + temp.file("b")->getFullName() +
                                     "'.\r\nWindows error message: " + getWindowsError(ACCESS_DENIED)});
    EXPECT_TRUE(temp.has("b"));
}

TEST(FileOperations, ReadsAndSetsTheReadOnlyAttribute)
{
    const TempFolder temp;
    temp.write("a");
    const auto file = temp.file("a");
    EXPECT_FALSE(file->isReadOnly());
    EXPECT_TRUE(file->access(0) && file->access(2) && file->access(4) && file->access(6));
    EXPECT_EQ(file->setAsReadOnly(), 0);
    EXPECT_EQ(file->setAsReadOnly(), 0);
    EXPECT_TRUE(file->isReadOnly());
    EXPECT_TRUE(file->access(0) && file->access(4));
    EXPECT_FALSE(file->access(2) || file->access(6));
    EXPECT_EQ(file->setReadOnly(false), 0);
    EXPECT_FALSE(file->isReadOnly());
    EXPECT_EQ(file->setReadOnly(true), 0);
    EXPECT_EQ(file->unsetAsReadOnly(), 0);
    EXPECT_FALSE(file->isReadOnly());

    const auto missing = temp.file("missing");
    EXPECT_TRUE(missing->isReadOnly());
    EXPECT_EQ(missing->setAsReadOnly(), 168);
    EXPECT_EQ(missing->setReadOnly(false), 168);
    EXPECT_FALSE(missing->access(0));
}

TEST(FileOperations, TouchesAndTellsTimes)
{
    const TempFolder temp;
    const auto file = temp.file("a");
    const auto ticks = [&](bool written)
    {
        std::uint64_t value = 0;
        static_assert(sizeof value == 8);
        auto* const time = reinterpret_cast<FILETIME*>(&value);
        EXPECT_TRUE(written ? file->getLastWriteTime(time) : file->getCreationTime(time));
        return value;
    };
    EXPECT_TRUE(file->touch());
    EXPECT_EQ(temp.read("a"), "");
    temp.write("a", "text");
    std::filesystem::last_write_time(temp.path("a"),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(48));
    const auto before = ticks(true);
    EXPECT_TRUE(file->touch());
    EXPECT_GT(ticks(true), before + 47ULL * 3600 * 10'000'000);
    EXPECT_GT(ticks(false), before);
    EXPECT_EQ(temp.read("a"), "text");
    EXPECT_FALSE(file->getCreationTime(nullptr));
    EXPECT_FALSE(temp.file("no/where")->touch());
    std::uint64_t none = 0;
    EXPECT_FALSE(temp.file("b")->getLastWriteTime(reinterpret_cast<FILETIME*>(&none)));
}

TEST(FileOperations, TellsSizes)
{
    const TempFolder temp;
    temp.write("a", "12345");
    temp.write("b", "54321");
    temp.write("c", "1");
    unsigned long long bytes = 77;
    EXPECT_FALSE(temp.file("missing")->size(bytes));
    EXPECT_EQ(bytes, 77U);
    EXPECT_TRUE(temp.file("a")->size(bytes));
    EXPECT_EQ(bytes, 5U);
    EXPECT_TRUE(temp.file("a")->hasEqualSize(*temp.file("b")));
    EXPECT_FALSE(temp.file("a")->hasEqualSize(*temp.file("c")));
    const auto missing = temp.file("missing");
    EXPECT_TRUE(missing->hasEqualSize(*missing));
    EXPECT_FALSE(missing->hasEqualSize(*temp.file("missing")));
    EXPECT_EQ(missing->getLockFilePath(), missing->getFullName());
}

TEST(FileOperations, OpensStreams)
{
    const TempFolder temp;
    const auto file = temp.file("a");
    *file->openWrite() << "one\r\ntwo\n";
    EXPECT_EQ(temp.read("a"), "one\r\ntwo\n");
    std::string word;
    EXPECT_TRUE(*file->openRead() >> word);
    EXPECT_EQ(word, "one");
    *file->openWrite(std::ios_base::app | std::ios_base::in | std::ios_base::binary) << "three";
    EXPECT_EQ(temp.read("a"), "one\r\ntwo\nthree");
    EXPECT_TRUE(*file->openRead(std::ios_base::out | std::ios_base::trunc | std::ios_base::binary));
    EXPECT_EQ(temp.read("a"), "one\r\ntwo\nthree");
    const auto missing = temp.file("no/where");
    ASSERT_NE(missing->openRead(), nullptr);
    EXPECT_FALSE(*missing->openRead());
    EXPECT_FALSE(*missing->openWrite());
}

TEST(FileOperations, MakesTheFoldersAbove)
{
    const TempFolder temp;
    const auto file = temp.file("x/y/z/file");
    EXPECT_TRUE(file->createParentDirectories());
    EXPECT_TRUE(file->createParentDirectories());
    EXPECT_EQ(temp.contents(), (Names{"x/", "x/y/", "x/y/z/"}));
    temp.write("plain");
    EXPECT_FALSE(temp.file("plain/below/file")->createParentDirectories());
}

}  // namespace

}  // namespace Oxa_1_1::test
