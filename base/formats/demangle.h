#pragma once

#include <string>

/// Names that the compiler wrote for the linker.
namespace Oxa_1_1::formats
{

/// The name as the source has it. Names that this compiler did not write stay as they are.
std::string demangle(const std::string& name);

/// A demangled name alone: without its parameters and without the result that names of templates begin with.
std::string nameAlone(const std::string& name);

}  // namespace Oxa_1_1::formats
