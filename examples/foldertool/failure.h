#pragma once

#include <stdexcept>

namespace foldertool
{

/// Why a command cannot go on, for the user to read.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What is wrong with the command line.
struct UsageError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The user asked the program to stop, or nobody reads what it prints any more.
struct Stopped : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

}  // namespace foldertool
