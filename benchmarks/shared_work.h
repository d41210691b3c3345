#pragma once

#include <utility>

#include "benchmarks/contest.h"
#include "benchmarks/samples.h"

/// Work that every text type does in the same words.
namespace Oxa_1_1::bench
{

/// S1 and S2 by `fromUtf8(bytes)` and `toUtf8(text)`.
template <class FromUtf8, class ToUtf8>
void addUtf8(const std::string& who, FromUtf8 fromUtf8, ToUtf8 toUtf8)
{
    const struct
    {
        const std::string& from;
        const std::string& to;
        std::string bytes;
    } cases[] = {{work::FROM_UTF8_SHORT, work::TO_UTF8_SHORT, asciiSample(32)},
                 {work::FROM_UTF8_ASCII, work::TO_UTF8_ASCII, asciiSample(FOUR_KIB)},
                 {work::FROM_UTF8_MIXED, work::TO_UTF8_MIXED, mixedSample()}};
    for (const auto& [from, to, bytes] : cases)
    {
        add(from, who, [fromUtf8, bytes = bytes] { keep(fromUtf8(bytes)); });
        add(to, who, [toUtf8, text = fromUtf8(bytes)] { keep(toUtf8(text)); });
    }
}

/// Numbers in a text, blanks between them.
template <class T>
struct NumbersSample
{
    T text;
    double items;
};

/// S6 without cutting: `makeText(bytes)` makes the text, `start(text)` whatever walks over it, and `next(walk, value)`
/// reads the next number.
template <class MakeText, class Start, class Next>
void addReaders(const std::string& who, MakeText makeText, Start start, Next next)
{
    constexpr int MANY = 1000000;
    using T = decltype(makeText(std::string()));
    const auto read = [start, next](auto number)
    {
        return [start, next, number](const NumbersSample<T>& sample)
        {
            auto walk = start(sample.text);
            auto value = number;
            for (double i = 0; i < sample.items; ++i)
            {
                next(walk, value);
                keep(value);
            }
        };
    };
    const auto addInts = [&](const std::string& work, auto sample) { addOn(work, who, sample, read(int{})); };
    const auto addDoubles = [&](const std::string& work, auto sample) { addOn(work, who, sample, read(double{})); };
    addInts(work::READER_INTS,
            [made = NumbersSample<T>{makeText(numbersSample()), 1000}]() -> const NumbersSample<T>& { return made; });
    addDoubles(work::READER_DOUBLES,
               [made = NumbersSample<T>{makeText(doublesText()), DOUBLES}]() -> const NumbersSample<T>&
               { return made; });
    addInts(work::READER_INTS_LARGE,
            [makeText]() -> const NumbersSample<T>&
            {
                static const NumbersSample<T> made{makeText(numbersSample(MANY)), MANY};
                return made;
            });
    addDoubles(work::READER_DOUBLES_LARGE,
               [makeText]() -> const NumbersSample<T>&
               {
                   static const NumbersSample<T> made{makeText(doublesText(1000 * DOUBLES)), 1000 * DOUBLES};
                   return made;
               });
}

/// S10. `copy` makes a text that shares nothing with its source.
template <class T, class Copy>
void addCopyAndMove(const std::string& who, const T& text, Copy copy)
{
    add(work::COPY, who, [text, copy] { keep(copy(text)); });
    add(
        work::MOVE, who,
        [a = text, b = T()]() mutable
        {
            b = std::move(a);
            keep(b);
            a = std::move(b);
            keep(a);
        },
        2);
}

}  // namespace Oxa_1_1::bench
