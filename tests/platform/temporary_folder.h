#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "base/char.h"

namespace Oxa_1_1::platform::test
{

/// A new folder for a test, removed with all that is in it at the end.
class TemporaryFolder
{
   public:
    TemporaryFolder()
    {
        std::random_device random;
        m_path = std::filesystem::canonical(std::filesystem::temp_directory_path()) /
                 ("oxa_test_" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directory(m_path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        // Elsewhere read-only files cannot be removed.
        const std::filesystem::recursive_directory_iterator end;
        for (std::filesystem::recursive_directory_iterator each(m_path, ignored); each != end; each.increment(ignored))
            if (!each->is_symlink(ignored))
                std::filesystem::permissions(each->path(), std::filesystem::perms::owner_write,
                                             std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }

    /// The spelling of something in it.
    Text operator/(const char* name) const
    {
        const std::u16string text = (m_path / name).u16string();
        Text spelling(text.begin(), text.end());
        for (Char& c : spelling)
            if (c == '/') c = '\\';
        return spelling;
    }

    void write(const char* name, const std::string& content) const
    {
        std::ofstream(m_path / name, std::ios::binary) << content;
    }

    /// "(none)" for a missing file.
    std::string read(const char* name) const
    {
        std::ifstream file(m_path / name, std::ios::binary);
        if (!file) return "(none)";
        std::ostringstream content;
        content << file.rdbuf();
        return std::move(content).str();
    }

    bool has(const char* name) const { return std::filesystem::exists(std::filesystem::symlink_status(m_path / name)); }

   private:
    std::filesystem::path m_path;
};

}  // namespace Oxa_1_1::platform::test
