// Extraction: whatever is read, the text only loses its front.

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

template <class T>
void readAll(String text)
{
    for (int length = text.length();; length = text.length())
    {
        const String before = text;
        T value{};
        text >> value;
        fuzz::require(!text.isNil());
        fuzz::require(before.endsWith(text) || text.isEmpty());
        if (text.length() == length) return;
    }
}

template <class... T>
void readAllAs(const String& text)
{
    (readAll<T>(text), ...);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const String narrow(fuzz::bytes(data, size));
    for (const String& text : {narrow, fuzz::units(data, size)})
    {
        readAllAs<signed char, unsigned short, int, unsigned long, long long, unsigned long long, double, bool, Char,
                  String>(text);

        String index = text;
        index.incrementIndex();
        fuzz::require(index.length() >= text.length());
        index.setIndex(7);
        fuzz::require(index.getIndex() == 7);
        String blank = text;
        blank.eatwhite();
        fuzz::require(text.endsWith(blank) || text.isEmpty());
    }
    return 0;
}
