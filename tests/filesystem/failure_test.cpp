// Why operations fail, as a value.

#include "base/filesystem/failure.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "base/filesystem/disk_facts.h"
#include "base/filesystem/links.h"
#include "base/filesystem/safe_writer.h"
#include "tests/filesystem/temp_folder.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(Failure, TellsStepPathAndReason)
{
    const TempFolder folder;
    folder.write("file");
    folder.write("full/inside/locked");
    folder.setReadOnly("full/inside/locked", true);
    const auto file = folder.file("file");
    const auto missing = folder.file("missing/file");
    const auto locked = folder.file("full/inside/locked");
    const auto full = folder.directory("full");
    const auto inside = folder.directory("full/inside");
    const auto relative = Directory::fromString("relative");
    unsigned long long bytes = 0;
    const struct
    {
        std::string_view operation;
        std::errc reason;
        String path;
        String target;
        std::function<bool()> act;
    } cases[] = {
        {"readAttributes",
         std::errc::no_such_file_or_directory,
         missing->getFullName(),
         {},
         [&] { return missing->exists(); }},
        {"readInformation",
         std::errc::no_such_file_or_directory,
         missing->getFullName(),
         {},
         [&] { return missing->size(bytes); }},
        {"openFile",
         std::errc::no_such_file_or_directory,
         missing->getFullName(),
         {},
         [&] { return missing->openRead()->good(); }},
        {"touchFile",
         std::errc::no_such_file_or_directory,
         missing->getFullName(),
         {},
         [&] { return missing->touch(); }},
        {"deleteFile", std::errc::permission_denied, locked->getFullName(), {}, [&] { return locked->remove(); }},
        // Why the folder is not empty.
        {"deleteFile", std::errc::permission_denied, locked->getFullName(), {}, [&] { return full->remove(true); }},
        {"removeFolder", std::errc::directory_not_empty, full->getFullName(), {}, [&] { return full->remove(false); }},
        {"copyFile", std::errc::file_exists, file->getFullName(), locked->getFullName(),
         [&] { return file->copy(*locked, false, nullptr) == 0; }},
        {"renameFile", std::errc::file_exists, file->getFullName(), locked->getFullName(),
         [&] { return file->move(*locked, false); }},
        {"copyFolder", std::errc::invalid_argument, full->getFullName(), inside->appendLevel("full")->getFullName(),
         [&] { return full->copy(*inside, false, nullptr) != nullptr; }},
        {"createFolder", std::errc::invalid_argument, relative->getFullName(), {}, [&] { return relative->create(); }},
        {"parsePath", std::errc::invalid_argument, "what?", {}, [&] { return File::fromString("what?") != nullptr; }},
        {"parsePath", std::errc::invalid_argument, {}, {}, [&] { return file->move(String(), true); }},
        {"parsePath", std::errc::invalid_argument, {}, {}, [&] { return file->copy(nullptr, true) == 0; }},
        {"createLink", std::errc::file_exists, file->getFullName(), "target",
         [&] { return createLink(*file, "target", LinkKind::File); }},
        {"writeLastWrite",
         std::errc::invalid_argument,
         file->getFullName(),
         {},
         [&] { return setLastWriteTime(*file, FileTime::min()); }},
        {"readVolumeSpace", std::errc::no_such_file_or_directory, missing->getFullName(), {}, [&] {
             return freeSpace(*missing).has_value();
         }}};
    for (const auto& c : cases)
    {
        forgetFailure();
        EXPECT_EQ(lastFailure(), std::nullopt);
        EXPECT_FALSE(c.act()) << c.operation;
        const std::optional<Failure> failure = lastFailure();
        ASSERT_TRUE(failure) << c.operation;
        EXPECT_EQ(failure->operation, c.operation);
        EXPECT_EQ(failure->path, c.path) << c.operation;
        EXPECT_EQ(failure->target, c.target) << c.operation;
        EXPECT_TRUE(failure->code == c.reason) << failure->message().stringUTF8();
        EXPECT_EQ(failure->message(), String::fromUTF8(c.operation) + (c.path.isNil() ? c.path : " " + c.path) +
                                          (c.target.isNil() ? c.target : " to " + c.target) + ": " +
                                          String::fromUTF8(failure->code.message()));
    }
    SafeWriter lost(*missing);
    forgetFailure();
    EXPECT_FALSE(lost.commit());
    EXPECT_TRUE(lastFailure()->path.startsWith(missing->getDirectory()->getFullName()));
    EXPECT_TRUE(lastFailure()->code == std::errc::no_such_file_or_directory);
    SafeWriter writer(*locked);
    EXPECT_FALSE(writer.commit());
    EXPECT_EQ(lastFailure()->target, locked->getFullName());
    EXPECT_TRUE(lastFailure()->code == std::errc::permission_denied);
    std::jthread([] { EXPECT_EQ(lastFailure(), std::nullopt); });
}

}  // namespace

}  // namespace Oxa_1_1::test
