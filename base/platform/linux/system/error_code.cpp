#include "base/platform/linux/system/error_code.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::uint32_t GENERAL_FAILURE = 31;

struct Pair
{
    int number;
    std::uint32_t code;
};

/// In both directions the first match holds. Rows that repeat a number with another code serve the way back alone.
constexpr Pair PAIRS[]{
    // Files and folders.
    {ENOENT, 2},
    {ENOENT, 3},
    {ENOTDIR, 3},
    {ENOTDIR, 267},
    {EACCES, 5},
    {EPERM, 5},
    {EPERM, 1314},
    {EISDIR, 5},
    {EISDIR, 336},
    {EEXIST, 183},
    {EEXIST, 80},
    {ENOTEMPTY, 145},
    {EXDEV, 17},
    {EROFS, 19},
    {ENAMETOOLONG, 206},
    {EBUSY, 32},
    {EBUSY, 33},
    {EBUSY, 170},
    {ETXTBSY, 32},
    {ELOOP, 1921},
    {EMLINK, 1142},
    {ENOENT, 18},
    {EINVAL, 87},
    {EINVAL, 123},
    {EINVAL, 161},
    {EINVAL, 4390},
    {ESTALE, 1006},
    {EUCLEAN, 1392},
    {EACCES, 65},
    {EACCES, 82},
    // Reading and writing.
    {EBADF, 6},
    {EBADFD, 6},
    {EMFILE, 4},
    {ENFILE, 4},
    {ENOSPC, 112},
    {ENOSPC, 39},
    {EDQUOT, 1295},
    {EFBIG, 223},
    {EIO, 1117},
    {EIO, 23},
    {EIO, 29},
    {EIO, 30},
    {ESPIPE, 132},
    {EPIPE, 109},
    {EPIPE, 232},
    {EBADMSG, 13},
    {EINTR, 10004},
    {ECANCELED, 1235},
    {ECANCELED, 1223},
    {ECANCELED, 995},
    {EAGAIN, 1237},
    {ETIMEDOUT, 1460},
    {ETIMEDOUT, 121},
    {ETIMEDOUT, 258},
    {ETIME, 1460},
    {ENOLCK, 36},
    {EDEADLK, 1131},
    // Devices and media.
    {ENODEV, 20},
    {ENODEV, 15},
    {ENXIO, 55},
    {ENOTTY, 1},
    {ENOTBLK, 1},
    {ENOMEDIUM, 1112},
    {ENOMEDIUM, 21},
    {EMEDIUMTYPE, 1785},
    {EREMOTEIO, 31},
    // Arguments, memory and results.
    {EDOM, 87},
    {E2BIG, 160},
    {ERANGE, 534},
    {ERANGE, 122},
    {EOVERFLOW, 534},
    {EILSEQ, 1113},
    {EFAULT, 998},
    {ENOMEM, 8},
    {ENOMEM, 14},
    {ENOSYS, 120},
    {EOPNOTSUPP, 50},
    {ENODATA, 1168},
    {ENOSR, 1450},
    {ENOTUNIQ, 52},
    // Programs, libraries and threads.
    {ENOEXEC, 193},
    {ELIBBAD, 193},
    {ELIBACC, 126},
    {ECHILD, 128},
    {ESRCH, 1444},
    {EOWNERDEAD, 735},
    // The network.
    {ENONET, 53},
    {ENONET, 67},
    {ENOTSOCK, 10038},
    {EDESTADDRREQ, 10039},
    {EMSGSIZE, 10040},
    {EPROTOTYPE, 10041},
    {ENOPROTOOPT, 10042},
    {EPROTONOSUPPORT, 10043},
    {ESOCKTNOSUPPORT, 10044},
    {EOPNOTSUPP, 10045},
    {EPFNOSUPPORT, 10046},
    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},
    {EADDRNOTAVAIL, 10049},
    {ENETDOWN, 10050},
    {ENETUNREACH, 1231},
    {ENETUNREACH, 10051},
    {ENETRESET, 10052},
    {ECONNABORTED, 1236},
    {ECONNABORTED, 10053},
    {ECONNRESET, 10054},
    {ECONNRESET, 64},
    {ENOBUFS, 10055},
    {EISCONN, 10056},
    {ENOTCONN, 2250},
    {ENOTCONN, 10057},
    {ESHUTDOWN, 10058},
    {ETOOMANYREFS, 10059},
    {ETIMEDOUT, 10060},
    {ECONNREFUSED, 1225},
    {ECONNREFUSED, 10061},
    {EHOSTDOWN, 10064},
    {EHOSTUNREACH, 1232},
    {EHOSTUNREACH, 10065},
    {EALREADY, 10037},
    {EINPROGRESS, 10036},
    {EINPROGRESS, 997},
    {EAGAIN, 10035},
};

}  // namespace

std::uint32_t errorCodeOfErrno(int number) noexcept
{
    if (number == 0) return 0;
    const auto* const found =
        std::find_if(std::begin(PAIRS), std::end(PAIRS), [&](const Pair& pair) { return pair.number == number; });
    return found == std::end(PAIRS) ? GENERAL_FAILURE : found->code;
}

int errnoOfErrorCode(std::uint32_t code) noexcept
{
    const auto* const found =
        std::find_if(std::begin(PAIRS), std::end(PAIRS), [&](const Pair& pair) { return pair.code == code; });
    return found == std::end(PAIRS) ? 0 : found->number;
}

}  // namespace Oxa_1_1::platform
