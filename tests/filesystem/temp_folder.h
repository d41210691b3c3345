#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1::test
{

/// An empty folder on disk for the duration of a test. Paths in it are relative, with slashes.
class TempFolder
{
   public:
    TempFolder()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        m_path = std::filesystem::temp_directory_path() /
                 (std::string(OXA_TEST_RUN "_") + test->test_suite_name() + "_" + test->name());
        clear();
        std::filesystem::create_directories(m_path);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { clear(); }

    std::filesystem::path path(const std::string& inside = {}) const
    {
        return inside.empty() ? m_path : m_path / inside;
    }
    std::shared_ptr<Directory> directory(const std::string& inside = {}) const
    {
        return Directory::fromPath(path(inside));
    }
    std::shared_ptr<File> file(const std::string& inside) const { return File::fromPath(path(inside)); }

    /// Makes the folders above, too.
    void write(const std::string& inside, const std::string& content = "content") const
    {
        std::filesystem::create_directories(path(inside).parent_path());
        std::ofstream(path(inside), std::ios_base::binary) << content;
    }
    void makeFolder(const std::string& inside) const { std::filesystem::create_directories(path(inside)); }
    bool has(const std::string& inside) const { return std::filesystem::exists(path(inside)); }
    /// "missing" when it is not there.
    std::string read(const std::string& inside) const
    {
        std::ifstream stream(path(inside), std::ios_base::binary);
        if (!stream) return "missing";
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void setReadOnly(const std::string& inside, bool readOnly) const
    {
        using std::filesystem::perm_options;
        constexpr auto WRITE = std::filesystem::perms::owner_write | std::filesystem::perms::group_write |
                               std::filesystem::perms::others_write;
        std::filesystem::permissions(path(inside), WRITE, readOnly ? perm_options::remove : perm_options::add);
    }

    /// What is in it, sorted, with slashes; folders end with one.
    std::vector<std::string> contents(const std::string& inside = {}) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path(inside)))
            names.push_back(entry.path().lexically_relative(path(inside)).generic_string() +
                            (entry.is_directory() ? "/" : ""));
        std::ranges::sort(names);
        return names;
    }

   private:
    void clear() const
    {
        std::error_code ignored;
        for (auto it = std::filesystem::recursive_directory_iterator(m_path, ignored);
             it != std::filesystem::recursive_directory_iterator(); it.increment(ignored))
            if (!it->is_symlink(ignored))
                std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                             std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path m_path;
};

using Names = std::vector<std::string>;

/// The names of items below a folder, as they come; folders end with a slash.
template <class Items>
Names namesIn(const Directory& folder, const Items& items)
{
    Names names;
    for (const auto& item : items)
        names.push_back(item->getFullNameUnix().substr(folder.getFullName().length()).stringUTF8());
    return names;
}

inline Names sorted(Names names)
{
    std::ranges::sort(names);
    return names;
}

}  // namespace Oxa_1_1::test
