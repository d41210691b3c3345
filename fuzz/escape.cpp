// Escapes: what was escaped comes back, and any text is taken without harm.

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    for (const bool unicode : {false, true})
    {
        for (const String& text : {fuzz::units(data, size), String(fuzz::bytes(data, size))})
        {
            String escaped = text;
            escaped.controlsToEsc(unicode);
            fuzz::require(escaped.find(Char('\n')) < 0 && escaped.find(Char('\r')) < 0);
            escaped.escToControls(unicode);
            fuzz::require(escaped.compareEquality(text) && escaped.view() == text.view());

            String raw = text;
            const int count = raw.escToControls(unicode);
            fuzz::require((count < 0) == (text.find(Char('\\')) < 0));
            fuzz::require(count < 0 || raw.length() <= text.length() - count);
        }
    }
    return 0;
}
