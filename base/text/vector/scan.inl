// Search and comparison by vectors of any width. Included, within an anonymous namespace, by each source that is
// compiled for one kind of processor; nothing here may be shared between them, nor call what is. `V` gives the vectors;
// V::Half is the next narrower kind for what is left behind the last whole vector, `Scalar` the end of that chain.

/// Units one by one, with the interface of a vector as far as the loops end in it.
struct Scalar
{
};

template <class V>
std::size_t findUnitBy(const Char* text, std::size_t length, Char c, std::size_t i)
{
    if constexpr (std::is_same_v<V, Scalar>)
    {
        for (; i < length; ++i)
            if (text[i] == c) return i;
        return NOT_FOUND;
    }
    else
    {
        const auto wanted = V::splat(c);
        // Four at a time hide the cost of the branch.
        for (; length - i >= 4 * V::UNITS; i += 4 * V::UNITS)
        {
            const auto hit0 = V::equal(V::load(text + i), wanted);
            const auto hit1 = V::equal(V::load(text + i + V::UNITS), wanted);
            const auto hit2 = V::equal(V::load(text + i + 2 * V::UNITS), wanted);
            const auto hit3 = V::equal(V::load(text + i + 3 * V::UNITS), wanted);
            if (V::mask(V::either(V::either(hit0, hit1), V::either(hit2, hit3))) != 0) break;
        }
        for (; length - i >= V::UNITS; i += V::UNITS)
            if (const unsigned hits = V::mask(V::equal(V::load(text + i), wanted))) return i + V::firstUnit(hits);
        return findUnitBy<typename V::Half>(text, length, c, i);
    }
}

inline bool sameUnits(const Char* a, const Char* b, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

/// `i` runs over the places where the pattern can begin. Both its ends are looked for at once, so that the rest is
/// compared rarely. A zero ends the search.
template <class V>
std::size_t findTextBy(const Char* text, std::size_t places, const Char* pattern, std::size_t patternLength,
                       std::size_t i)
{
    const std::size_t last = patternLength - 1;
    if constexpr (std::is_same_v<V, Scalar>)
    {
        for (; i < places && text[i] != 0; ++i)
            if (text[i] == pattern[0] && text[i + last] == pattern[last] && sameUnits(text + i, pattern, last))
                return i;
        return NOT_FOUND;
    }
    else
    {
        const auto firstUnit = V::splat(pattern[0]);
        const auto lastUnit = V::splat(pattern[last]);
        const auto zero = V::splat(0);
        for (; i < places && places - i >= V::UNITS; i += V::UNITS)
        {
            const auto units = V::load(text + i);
            const auto hits = V::both(V::equal(units, firstUnit), V::equal(V::load(text + i + last), lastUnit));
            const auto ends = V::equal(units, zero);
            unsigned stops = V::mask(V::either(hits, ends));
            for (; stops != 0; stops = V::withoutFirst(stops))
            {
                const std::size_t place = i + V::firstUnit(stops);
                if (text[place] == 0) return NOT_FOUND;
                if (sameUnits(text + place, pattern, last)) return place;
            }
        }
        return findTextBy<typename V::Half>(text, places, pattern, patternLength, i);
    }
}

template <class V>
int compareUnitsBy(const Char* a, const Char* b, std::size_t length)
{
    if constexpr (std::is_same_v<V, Scalar>)
    {
        for (std::size_t i = 0; i < length; ++i)
            if (a[i] != b[i] || a[i] == 0) return a[i] - b[i];
        return 0;
    }
    else
    {
        if (length < V::UNITS) return compareUnitsBy<typename V::Half>(a, b, length);
        const auto zero = V::splat(0);
        for (std::size_t i = 0; i < length; i += V::UNITS)
        {
            // The last vector looks once more at what the one before it found the same.
            if (length - i < V::UNITS) i = length - V::UNITS;
            const auto unitsA = V::load(a + i);
            const unsigned same = V::mask(V::butNot(V::equal(unitsA, V::load(b + i)), V::equal(unitsA, zero)));
            if (same == V::ALL) continue;
            const std::size_t place = i + V::firstUnit(same ^ V::ALL);
            return a[place] - b[place];
        }
        return 0;
    }
}

inline int lowerAsciiUnit(Char c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : c; }

inline int lowerUnit(Char c) { return c < 0x80 ? lowerAsciiUnit(c) : detail::lowerBeyondAscii(c); }

/// Which units of a vector at both are zero, or differ after lowering ASCII.
template <class V>
unsigned loweredStops(const Char* a, const Char* b)
{
    const auto units = V::load(a);
    const auto same = V::equal(V::lowerAscii(units), V::lowerAscii(V::load(b)));
    return V::mask(V::butNot(same, V::equal(units, V::splat(0)))) ^ V::ALL;
}

/// From the unit `i` on: a block with a stop is done one by one, and the vectors take over again behind it. Only
/// letters beyond ASCII come here, so that others are spared what calls for them take.
template <class V>
OXA_KEPT_APART int compareLoweredFrom(const Char* a, const Char* b, std::size_t length, std::size_t i)
{
    constexpr bool BY_ONE = std::is_same_v<V, Scalar>;
    std::size_t end = length;
    for (; i < length; i = end)
    {
        if constexpr (!BY_ONE)
        {
            end = length - i < V::UNITS ? length : i + V::UNITS;
            if (end == i + V::UNITS && loweredStops<V>(a + i, b + i) == 0) continue;
        }
        for (; i < end; ++i)
        {
            const int difference = a[i] == b[i] ? 0 : lowerUnit(a[i]) - lowerUnit(b[i]);
            if (difference != 0 || a[i] == 0) return difference;
        }
    }
    return 0;
}

template <class V>
int compareIgnoreCaseBy(const Char* a, const Char* b, std::size_t length)
{
    if constexpr (std::is_same_v<V, Scalar>)
        return compareLoweredFrom<V>(a, b, length, 0);
    else
    {
        if (length < V::UNITS) return compareIgnoreCaseBy<typename V::Half>(a, b, length);
        for (std::size_t i = 0; i < length; i += V::UNITS)
        {
            // The last vector looks once more at what the one before it found the same.
            if (length - i < V::UNITS) i = length - V::UNITS;
            const unsigned stops = loweredStops<V>(a + i, b + i);
            if (stops == 0) continue;
            const std::size_t place = i + V::firstUnit(stops);
            if ((a[place] | b[place]) < 0x80) return lowerAsciiUnit(a[place]) - lowerAsciiUnit(b[place]);
            return compareLoweredFrom<V>(a, b, length, place);
        }
        return 0;
    }
}

template <class V>
std::size_t findUnit(const Char* text, std::size_t length, Char c)
{
    return findUnitBy<V>(text, length, c, 0);
}

template <class V>
std::size_t findText(const Char* text, std::size_t length, const Char* pattern, std::size_t patternLength)
{
    if (patternLength > length) return NOT_FOUND;
    return findTextBy<V>(text, length - patternLength + 1, pattern, patternLength, 0);
}

template <class V>
int compareUnits(const Char* a, const Char* b, std::size_t length)
{
    return compareUnitsBy<V>(a, b, length);
}

template <class V>
int compareUnitsIgnoreCase(const Char* a, const Char* b, std::size_t length)
{
    return compareIgnoreCaseBy<V>(a, b, length);
}

template <class V>
std::size_t countAsciiBytes(const char* bytes, std::size_t length)
{
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
    {
        constexpr std::size_t BYTES = 2 * V::UNITS;
        for (; length - i >= 4 * BYTES; i += 4 * BYTES)
        {
            const auto low = V::either(V::loadBytes(bytes + i), V::loadBytes(bytes + i + BYTES));
            const auto high = V::either(V::loadBytes(bytes + i + 2 * BYTES), V::loadBytes(bytes + i + 3 * BYTES));
            if (V::mask(V::either(low, high)) != 0) return i;
        }
        for (; length - i >= BYTES; i += BYTES)
            if (V::mask(V::loadBytes(bytes + i)) != 0) return i;
    }
    while (i < length && static_cast<unsigned char>(bytes[i]) < 0x80) ++i;
    return i;
}

template <class V>
std::size_t countAsciiUnits(const Char* units, std::size_t length)
{
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
    {
        for (; length - i >= 4 * V::UNITS; i += 4 * V::UNITS)
        {
            const auto low = V::either(V::load(units + i), V::load(units + i + V::UNITS));
            const auto high = V::either(V::load(units + i + 2 * V::UNITS), V::load(units + i + 3 * V::UNITS));
            if (!V::isAscii(V::either(low, high))) return i;
        }
        for (; length - i >= V::UNITS; i += V::UNITS)
            if (!V::isAscii(V::load(units + i))) return i;
    }
    while (i < length && units[i] < 0x80) ++i;
    return i;
}

template <class V>
void widenBytes(const char* bytes, std::size_t length, Char* units)
{
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
        for (; length - i >= 2 * V::UNITS; i += 2 * V::UNITS) V::widen(bytes + i, units + i);
    for (; i < length; ++i) units[i] = static_cast<unsigned char>(bytes[i]);
}

template <class V>
void narrowAscii(const Char* units, std::size_t length, char* bytes)
{
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
        for (; length - i >= 2 * V::UNITS; i += 2 * V::UNITS) V::narrow(units + i, bytes + i);
    for (; i < length; ++i) bytes[i] = static_cast<char>(units[i]);
}

template <class V>
void markControls(const char* bytes, std::size_t blocks, std::uint64_t* marks)
{
    constexpr std::size_t BLOCK = 64;
    for (; blocks != 0; --blocks, bytes += BLOCK, ++marks)
    {
        *marks = 0;
        if constexpr (std::is_same_v<V, Scalar>)
            for (std::size_t i = 0; i < BLOCK; ++i) *marks |= std::uint64_t((bytes[i] & 0xE0) == 0x80) << i;
        else
            for (std::size_t i = 0; i < BLOCK; i += 2 * V::UNITS) *marks |= std::uint64_t(V::controls(bytes + i)) << i;
    }
}

template <class V>
std::size_t countUnits(const char* bytes, std::size_t length)
{
    std::size_t count = 0;
    std::size_t i = 0;
    if constexpr (!std::is_same_v<V, Scalar>)
        for (; length - i >= 2 * V::UNITS; i += 2 * V::UNITS) count += V::countUnits(bytes + i);
    for (; i < length; ++i)
    {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        // All but continuation bytes begin a character, and one of four bytes has two units.
        count += ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
    }
    return count;
}

template <class V>
std::size_t countBytes(const Char* units, std::size_t length)
{
    std::size_t count = 0;
    std::size_t i = 0;
    // A vector looks at the unit behind it, too: a surrogate pair counts where its first half stands.
    if constexpr (!std::is_same_v<V, Scalar>)
        for (; length - i > V::UNITS; i += V::UNITS) count += V::countBytes(units + i);
    for (; i < length; ++i)
    {
        count += 1u + (units[i] >= 0x80) + (units[i] >= 0x800);
        const bool pair = i + 1 < length && (units[i] & 0xFC00) == 0xD800 && (units[i + 1] & 0xFC00) == 0xDC00;
        count -= pair ? 2 : 0;
    }
    return count;
}
