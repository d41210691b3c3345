#include "base/filesystem/detail/hand_over.h"

#include <utility>
#include <vector>

#include "base/filesystem/detail/result_codes.h"

namespace Oxa_1_1::detail
{

namespace
{

constexpr std::size_t PIECE = 64 * 1024;

thread_local constinit bool isHandedOver = false;

}  // namespace

bool HandOver::isUnderWay() noexcept { return isHandedOver; }

HandOver::HandOver() noexcept : m_wasUnderWay(std::exchange(isHandedOver, true)) {}

HandOver::~HandOver() { isHandedOver = m_wasUnderWay; }

int copyThroughStreams(const File& source, const File& target)
{
    const auto in = source.openRead(std::ios_base::in | std::ios_base::binary);
    if (in == nullptr || !*in) return FAILED;
    auto out = target.openWrite(std::ios_base::out | std::ios_base::binary);
    if (out == nullptr || !*out) return FAILED;
    std::vector<char> piece(PIECE);
    while (*in && *out)
    {
        in->read(piece.data(), static_cast<std::streamsize>(piece.size()));
        out->write(piece.data(), in->gcount());
    }
    out->flush();
    // Some file systems write only now. Streams of other implementations may have no file.
    if (out->is_open()) out->close();
    if (!in->bad() && *out) return SUCCESS;
    // What is there now is less than either side had.
    out.reset();
    target.remove();
    return FAILED;
}

}  // namespace Oxa_1_1::detail
