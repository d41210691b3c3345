#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <string>

#include "base/platform/linux/files/file_content.h"
#include "base/platform/linux/files/file_descriptor.h"
#include "base/platform/linux/files/places.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr std::size_t COMPARED_PIECE = 256 * 1024;

/// As much as fits, but for the end of the file. Negative when reading fails.
ssize_t readPiece(int file, const PieceBuffer& piece)
{
    std::size_t done = 0;
    while (done < piece.size())
    {
        const ssize_t size = uninterrupted([&] { return read(file, piece.data() + done, piece.size() - done); });
        if (size < 0) return size;
        if (size == 0) break;
        done += static_cast<std::size_t>(size);
    }
    return static_cast<ssize_t>(done);
}

bool differ()
{
    setLastError(FILE_CHANGED);
    return false;
}

bool isSameBytes(const ReachablePath& a, const ReachablePath& b, std::size_t size, const CopyProgress& progress)
{
    const FileDescriptor fileA(a.open(O_RDONLY | O_NOFOLLOW));
    if (!fileA.isOpen()) return a.fail();
    const FileDescriptor fileB(b.open(O_RDONLY | O_NOFOLLOW));
    if (!fileB.isOpen()) return b.fail();
    const std::size_t room = std::min(size + 1, COMPARED_PIECE);
    const PieceBuffer pieceA(room);
    const PieceBuffer pieceB(room);
    std::uint64_t done = 0;
    for (;;)
    {
        const ssize_t length = readPiece(fileA.get(), pieceA);
        const ssize_t lengthB = length < 0 ? length : readPiece(fileB.get(), pieceB);
        if (lengthB < 0) return failWith(errno);
        if (lengthB != length || !std::equal(pieceA.data(), pieceA.data() + length, pieceB.data())) return differ();
        if (static_cast<std::size_t>(length) < room) return true;
        done += static_cast<std::uint64_t>(length);
        if (progress) progress(done, size);
    }
}

std::string textOfLink(const ReachablePath& path)
{
    std::string text(PATH_MAX, '\0');
    const ssize_t length = readlinkat(path.folder(), path.itself(), text.data(), text.size());
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

bool isSameLink(const ReachablePath& a, const ReachablePath& b)
{
    const std::string textOfA = textOfLink(a);
    if (textOfA.empty()) return a.fail();
    const std::string textOfB = textOfLink(b);
    if (textOfB.empty()) return b.fail();
    return textOfA == textOfB || differ();
}

}  // namespace

bool isSameContent(const ReachablePath& a, const ReachablePath& b, const CopyProgress& progress)
{
    struct stat statusA;
    struct stat statusB;
    if (!a.readOwnStatus(statusA) || !b.readOwnStatus(statusB)) return false;
    if ((statusA.st_mode & S_IFMT) != (statusB.st_mode & S_IFMT)) return differ();
    if (S_ISLNK(statusA.st_mode)) return isSameLink(a, b);
    if (!S_ISREG(statusA.st_mode) || statusA.st_size != statusB.st_size) return differ();
    return isSameBytes(a, b, static_cast<std::size_t>(statusA.st_size), progress);
}

}  // namespace Oxa_1_1::platform::native
