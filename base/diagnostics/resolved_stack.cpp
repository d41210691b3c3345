#include "base/diagnostics/resolved_stack.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <utility>

#include "base/diagnostics/detail/symbol_cache.h"
#include "base/platform/stack/call_stack.h"
#include "base/platform/stack/threads.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

constexpr std::size_t MOST_FRAMES = 256;
constexpr platform::SymbolParts ALL_PARTS{true, true, true, true};

/// Where a call stands is looked for, not where it returns to. An address of 0 becomes one where nothing lies.
/// @{
std::uint64_t callBefore(const void* address) { return reinterpret_cast<std::uintptr_t>(address) - 1; }
const void* addressBehind(std::uint64_t call) { return reinterpret_cast<const void*>(call + 1); }
/// @}

/// The symbols of this process, for all who name frames.
class Resolver
{
   public:
    detail::SymbolCache::Keeper find(std::span<const std::uint64_t> addresses,
                                     std::span<const detail::KnownAddress*> found)
    {
        if (m_session == nullptr) return nullptr;
        const std::uint64_t generation = m_session->moduleGeneration();
        // Asked first, because an exchange takes much longer than a look.
        if (m_generation.load() != generation && m_generation.exchange(generation) != generation)
            m_session->loadModules(false);
        return m_cache.find(*m_session, generation, ALL_PARTS, addresses, found);
    }

   private:
    std::unique_ptr<platform::SymbolSession> m_session = platform::SymbolSession::open(0, nullptr, nullptr);
    std::atomic<std::uint64_t> m_generation{~std::uint64_t{0}};
    detail::SymbolCache m_cache;
};

Resolver& resolver()
{
    // Never destroyed: destructors of static objects may name frames, too.
    static auto& instance = *new Resolver;
    return instance;
}

ResolvedFrame frameOf(const platform::ModuleInfo& module)
{
    ResolvedFrame frame{};
    frame.module = module.name;
    frame.moduleFile = module.file;
    frame.moduleBase = module.base;
    if (module.base != 0) frame.symbolType = platform::symbolTypeText(module.symbolType);
    return frame;
}

/// Of the function itself, or of one that is inlined.
template <class Symbol>
void takeSource(ResolvedFrame& frame, const Symbol& symbol)
{
    frame.function = symbol.plainName;
    frame.signature = symbol.fullName;
    frame.linkerName = symbol.name;
    frame.file = symbol.file;
    frame.line = symbol.line;
}

void append(std::vector<ResolvedFrame>& frames, std::span<const detail::KnownAddress* const> known)
{
    std::size_t count = frames.size();
    for (const detail::KnownAddress* const k : known) count += k->frames.size();
    frames.reserve(count);
    for (const detail::KnownAddress* const k : known)
    {
        // Mostly there is one; a copy of any number takes longer.
        if (k->frames.size() == 1)
            frames.push_back(k->frames.front());
        else
            frames.insert(frames.end(), k->frames.begin(), k->frames.end());
    }
}

std::string hexadecimal(const void* address)
{
    std::array<char, 16> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), reinterpret_cast<std::uintptr_t>(address), 16).ptr;
    return "0x" + std::string(digits.data(), end);
}

ThreadStack captureThread(std::uint32_t thread)
{
    ThreadStack stack{thread, platform::threadName(thread), {}, 0};
    stack.addresses.resize(MOST_FRAMES);
    const std::size_t count = platform::captureThread(thread, stack.addresses);
    if (count == 0) stack.error = platform::lastError();
    stack.addresses.resize(count);
    return stack;
}

}  // namespace

std::vector<ResolvedFrame> detail::framesOf(std::uint64_t call, const platform::SymbolInfo& symbol)
{
    std::vector<ResolvedFrame> frames;
    ResolvedFrame frame = frameOf(symbol.module);
    frame.address = addressBehind(call);
    frame.isInlined = true;
    for (const platform::InlinedFunction& inlined : symbol.inlined)
    {
        takeSource(frame, inlined);
        frames.push_back(frame);
    }
    frame.isInlined = false;
    takeSource(frame, symbol);
    frames.push_back(frame);
    return frames;
}

std::string ResolvedStack::text(std::size_t first) const
{
    std::string lines;
    for (std::size_t i = first; i < m_frames.size(); ++i)
    {
        const ResolvedFrame& frame = m_frames[i];
        lines += "  ";
        lines += frame.signature.empty() ? hexadecimal(frame.address) : std::string(frame.signature);
        if (frame.line != 0)
            lines.append(" (").append(frame.file).append(":").append(std::to_string(frame.line)).append(")");
        else if (!frame.module.empty())
            lines.append(" (").append(frame.module).append(")");
        lines += '\n';
    }
    return lines;
}

ResolvedStack resolveFrames(std::span<void* const> addresses)
{
    ResolvedStack stack;
    std::array<std::uint64_t, MOST_FRAMES> calls;
    std::array<const detail::KnownAddress*, MOST_FRAMES> known;
    std::vector<std::shared_ptr<const void>> keepers;
    while (!addresses.empty())
    {
        const std::size_t count = std::min(addresses.size(), MOST_FRAMES);
        std::transform(addresses.begin(), addresses.begin() + static_cast<std::ptrdiff_t>(count), calls.begin(),
                       callBefore);
        auto keeper = resolver().find(std::span(calls).first(count), std::span(known).first(count));
        if (keeper == nullptr)
            for (void* const address : addresses.first(count)) stack.m_frames.emplace_back().address = address;
        else
            append(stack.m_frames, std::span(known).first(count));
        addresses = addresses.subspan(count);
        if (stack.m_texts == nullptr)
            stack.m_texts = std::move(keeper);
        else if (keeper != stack.m_texts)
            keepers.push_back(std::move(keeper));
    }
    if (!keepers.empty())
    {
        keepers.push_back(std::move(stack.m_texts));
        stack.m_texts = std::make_shared<decltype(keepers)>(std::move(keepers));
    }
    return stack;
}

std::vector<ThreadStack> captureAllThreads()
{
    const std::uint32_t self = platform::currentThreadId();
    std::vector<ThreadStack> stacks{{self, platform::threadName(self), std::vector<void*>(MOST_FRAMES), 0}};
    stacks[0].addresses.resize(platform::captureStack(stacks[0].addresses, OXA_CURRENT_FRAME));
    for (const std::uint32_t thread : platform::listThreads())
    {
        if (thread == self) continue;
        ThreadStack stack = captureThread(thread);
        // It may have ended meanwhile.
        if (stack.error == 0 || platform::isRunning(thread)) stacks.push_back(std::move(stack));
    }
    return stacks;
}

}  // namespace Oxa_1_1
