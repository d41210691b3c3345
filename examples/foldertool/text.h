#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "base/filesystem/failure.h"
#include "base/filesystem/file_system_item.h"
#include "examples/foldertool/resource.h"

// What the program says, in UTF-8. The texts are resources of the module: its translation speaks another language.
namespace foldertool
{

/// The text `id` of the string table, with arguments for its %1 to %9.
std::string text(unsigned int id, std::initializer_list<std::string> arguments = {});

/// "1 file" by the text `id`, or "5,070 files" by the one that follows it.
std::string counted(unsigned int id, unsigned long long count);

/// "5,070"
std::string numberText(unsigned long long number);
/// "48.1 MB"
std::string byteText(unsigned long long bytes);
/// "210.4 MB/s"; empty for what took no time.
std::string rateText(unsigned long long bytes, std::chrono::duration<double> time);
/// "230 ms"
std::string timeText(std::chrono::duration<double> time);

/// The path in the system's spelling; control characters, which could do something to a terminal, are escaped.
/// @{
std::string pathText(const Oxa_1_1::FileSystemItem& item);
std::string nameText(const std::filesystem::path& path);
/// Of any other name that the program was given.
std::string escaped(const std::string& name);
/// @}

/// Why the last operation of the library failed.
std::string lastReason();
/// Why a step of one did.
std::string reasonText(const Oxa_1_1::Failure& failure);

std::size_t columnsOf(const std::string& text);
/// Filled up with blanks to a number of columns, the text on the left or on the right.
std::string left(const std::string& text, std::size_t columns);
std::string right(const std::string& text, std::size_t columns);

}  // namespace foldertool
