#include "base/diagnostics/detail/walk_text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace Oxa_1_1::detail
{

namespace
{

std::string orEmpty(const char* text) { return text == nullptr ? std::string() : std::string(text); }

bool isEmpty(const char* text) { return text == nullptr || *text == 0; }

std::string decimal(std::uint64_t value) { return std::to_string(value); }

/// Without leading zeros, in lower case.
std::string hexadecimal(std::uint64_t value)
{
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    return {digits.data(), end};
}

/// As the wide system writes pointers: sixteen digits in upper case, on every system.
std::string pointer(std::uint64_t value)
{
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string text(16, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4) *digit = DIGITS[value & 0xF];
    return text;
}

std::string versionText(std::uint64_t version)
{
    std::string text;
    for (const int shift : {48, 32, 16, 0})
    {
        if (!text.empty()) text += '.';
        text += decimal(version >> shift & 0xFFFF);
    }
    return text;
}

/// The name that tells most.
const char* functionName(const StackWalker::CallstackEntry& entry)
{
    for (const char* const name : {entry.undFullName, entry.undName, entry.name})
        if (!isEmpty(name)) return name;
    return "(function-name not available)";
}

const char* moduleName(const StackWalker::CallstackEntry& entry)
{
    return isEmpty(entry.moduleName) ? "(module-name not available)" : entry.moduleName;
}

const char* fileName(const StackWalker::CallstackEntry& entry)
{
    return isEmpty(entry.lineFileName) ? "(filename not available)" : entry.lineFileName;
}

}  // namespace

std::string searchPathLine(const char* searchPath, DWORD options, const char* userName)
{
    return "SymInit: Symbol-SearchPath: '" + orEmpty(searchPath) + "', symOptions: " + decimal(options) +
           ", UserName: '" + orEmpty(userName) + "'\n";
}

std::string systemLine(const platform::SystemVersion& version)
{
    return "OS-Version: " + decimal(version.major) + "." + decimal(version.minor) + "." + decimal(version.build) +
           " (" + version.description + ") 0x" + hexadecimal(version.suites) + "-0x" +
           hexadecimal(version.productType) + "\n";
}

std::string moduleLine(const char* file, const char* name, DWORD64 base, DWORD size, DWORD result,
                       const char* symbolType, const char* symbolFile, ULONGLONG fileVersion)
{
    std::string line = orEmpty(file) + ":" + orEmpty(name) + " (" + pointer(base) + "), size: " + decimal(size) +
                       " (result: " + decimal(result) + "), SymType: '" + orEmpty(symbolType) + "', PDB: '" +
                       orEmpty(symbolFile) + "'";
    if (fileVersion != 0) line += ", fileVersion: " + versionText(fileVersion);
    return line + "\n";
}

std::string frameLine(const StackWalker::CallstackEntry& entry)
{
    if (entry.lineNumber == 0 || isEmpty(entry.lineFileName))
        return pointer(entry.offset) + " (" + moduleName(entry) + "): " + fileName(entry) + ": " + functionName(entry) +
               "\n";
    return std::string(entry.lineFileName) + " (" + decimal(entry.lineNumber) + "): " + functionName(entry) + "\n";
}

std::string errorLine(const char* function, DWORD code, DWORD64 address)
{
    return "ERROR: " + orEmpty(function) + ", GetLastError: " + decimal(code) + " (Address: " + pointer(address) +
           ")\n";
}

}  // namespace Oxa_1_1::detail
