#pragma once

#include <string>

namespace foldertool
{

/// A line on standard output. Throws as flushOutput() when that cannot be written any more.
void print(const std::string& line);

/// A line on standard error, with the program's name.
void complain(const std::string& message);

/// Ends what is under way by an exception when the program was asked to stop.
void throwIfStopped();

/// Writes what is still held back. Throws when not all that was printed could be written.
void flushOutput();

}  // namespace foldertool
