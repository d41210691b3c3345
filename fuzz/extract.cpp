// Extraction: whatever is read, the text only loses its front, and a reader reads the same off a text that stays.

#include "base/string/text_reader.h"
#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

template <class T>
bool isSame(const T& a, const T& b)
{
    return a == b || (a != a && b != b);
}

bool isSame(const String& a, const String& b) { return a.view() == b.view(); }

template <class T>
void readAll(String text)
{
    const String whole = text;
    TextReader reader(whole);
    for (int length = text.length();; length = text.length())
    {
        const String before = text;
        T value{};
        text >> value;
        T read{};
        reader >> read;
        fuzz::require(isSame(read, value) && reader.rest() == text.view());
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
