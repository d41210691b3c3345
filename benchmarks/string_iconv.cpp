#include <iconv.h>

#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

[[maybe_unused]] const bool registered = []
{
    add(work::FROM_ANSI, "iconv",
        [bytes = ansiSample(), converter = iconv_open("UTF-16LE", "WINDOWS-1252")]() mutable
        {
            std::u16string text(bytes.size(), u'\0');
            char* from = bytes.data();
            std::size_t left = bytes.size();
            char* to = reinterpret_cast<char*>(text.data());
            std::size_t room = text.size() * sizeof(char16_t);
            iconv(converter, &from, &left, &to, &room);
            keep(text);
        });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
