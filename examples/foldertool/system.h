#pragma once

#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "base/string/oxa_string.h"

/// What a console program asks of the system, once for Linux and once for Windows.
namespace foldertool::system
{

/// Makes the standard streams ready, and turns requests to stop (Ctrl-C, for example) into stopCode().
void prepare();

/// The exit code of a program that was asked to stop, 0 as long as it was not. A second request ends the program.
int stopCode() noexcept;

/// Requests the stop of an operation as soon as the program is asked to stop, as long as the result is kept.
std::shared_ptr<void> stopWhenAsked(std::stop_source operation);

/// Whether standard output is a pipe that can break without a request to stop.
bool isOutputPipe();

/// The command line without the program's name, in the system's own spelling.
std::vector<std::filesystem::path> arguments(int argc, char** argv);

/// An argument as a text to read, and as the bytes to print. Names of files may hold what no text can.
Oxa_1_1::String textOf(const std::filesystem::path& argument);
std::string bytesOf(const std::filesystem::path& argument);

/// Whether two paths, without links in them, lead to the same file or folder.
bool isSame(const std::filesystem::path& a, const std::filesystem::path& b);

/// The columns of the terminal that standard error goes to; 0 when it goes elsewhere.
int terminalWidth();

}  // namespace foldertool::system
