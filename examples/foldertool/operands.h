#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

// What the operands of a command name. They are in the system's own spelling and may be relative. Each function throws
// a Failure for what does not fit.
namespace foldertool
{

using SharedFile = std::shared_ptr<const Oxa_1_1::File>;
using SharedFolder = std::shared_ptr<const Oxa_1_1::Directory>;
using SharedItem = std::shared_ptr<const Oxa_1_1::FileSystemItem>;

/// The file or folder that is there.
SharedItem existingItem(const std::filesystem::path& operand);
/// The same, when it is a folder that may be read.
SharedFolder existingFolder(const std::filesystem::path& operand);

/// The bytes of a file, of at most that many megabytes.
std::string contentOf(const std::filesystem::path& operand, std::size_t megabytes);

/// Where a folder or file is to be copied or moved to. Unless `overwrite`, nothing may be lost there. It is neither
/// `source` nor anything in it.
SharedFolder newFolder(const std::filesystem::path& operand, const Oxa_1_1::Directory& source, bool overwrite);
SharedFile newFile(const std::filesystem::path& operand, const Oxa_1_1::File& source, bool overwrite);

}  // namespace foldertool
