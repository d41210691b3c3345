#pragma once

#include <string_view>

/// Runs an example of a page and compares what it writes to std::cout with what the page says that it prints, line by
/// line. "..." in a line of the page stands for any text, a line of nothing else for any number of lines.
void runExample(const char* place, void (*example)(), std::string_view stated);

/// The examples of a page work in an empty folder, which is the current one.
void enterEmptyFolder(const char* folder);
