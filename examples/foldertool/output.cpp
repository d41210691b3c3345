#include "examples/foldertool/output.h"

#include <iostream>

#include "examples/foldertool/failure.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

void print(const std::string& line)
{
    throwIfStopped();
    std::cout << line << '\n';
    // Nothing more is looked for when nobody hears of it.
    if (!std::cout) flushOutput();
}

void complain(const std::string& message)
{
    // In the order of what happened, where both go to the same place.
    std::cout.flush();
    std::cerr << text(IDS_PROGRAM) + ": " + message + '\n';
}

void throwIfStopped()
{
    if (system::stopCode() != 0) throw Stopped(text(IDS_INTERRUPTED));
}

void flushOutput()
{
    const bool isWritten = static_cast<bool>(std::cout.flush());
    throwIfStopped();
    // Nobody reads any more, and nobody wants to hear of it.
    if (!isWritten && system::isOutputPipe()) throw Stopped(std::string());
    if (!isWritten) throw Failure(text(IDS_OUTPUT_FAILED));
}

}  // namespace foldertool
