#include "base/platform/linux/system/error_code.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

#include "base/platform/system/error_text.h"

namespace Oxa_1_1::platform
{

namespace
{

TEST(ErrorCode, ErrnoValuesHaveTheCodesOfTheSameFailuresOnWindows)
{
    const struct
    {
        int number;
        std::uint32_t code;
    } cases[] = {{0, 0},        {ENOENT, 2},         {ENOTDIR, 3},  {EMFILE, 4},  {ENFILE, 4},       {EACCES, 5},
                 {EPERM, 5},    {EISDIR, 5},         {EBADF, 6},    {ENOMEM, 8},  {EXDEV, 17},       {EROFS, 19},
                 {ENODEV, 20},  {EBUSY, 32},         {ETXTBSY, 32}, {EINVAL, 87}, {ENOSPC, 112},     {ENOTEMPTY, 145},
                 {EEXIST, 183}, {ENAMETOOLONG, 206}, {EFBIG, 223},  {EIO, 1117},  {ECANCELED, 1235}, {EDQUOT, 1295},
                 {ELOOP, 1921}, {ETIMEDOUT, 1460},   {9999, 31},    {-1, 31}};
    for (const auto& [number, code] : cases) EXPECT_EQ(errorCodeOfErrno(number), code) << number;
}

TEST(ErrorCode, TheWayBackGivesTheNearestErrno)
{
    const struct
    {
        std::uint32_t code;
        int number;
    } cases[] = {{0, 0},       {2, ENOENT},       {3, ENOENT},       {267, ENOTDIR},  {5, EACCES},    {32, EBUSY},
                 {80, EEXIST}, {183, EEXIST},     {39, ENOSPC},      {123, EINVAL},   {161, EINVAL},  {87, EINVAL},
                 {53, ENONET}, {1223, ECANCELED}, {1235, ECANCELED}, {0x20000001, 0}, {0xFFFFFFFF, 0}};
    for (const auto& [code, number] : cases) EXPECT_EQ(errnoOfErrorCode(code), number) << code;
}

TEST(ErrorCode, NearlyEveryErrnoSurvivesTheWayThereAndBack)
{
    // Those that share a code with another, or have none of their own.
    const std::set<int> shared{EPERM, EISDIR,  ENOTDIR, ETXTBSY,   ENFILE, EBADFD,
                               ETIME, ENOTBLK, EDOM,    EOVERFLOW, ELIBBAD};
    for (int number = 1; number < 134; ++number)
    {
        const std::uint32_t code = errorCodeOfErrno(number);
        if (code == 31 || shared.contains(number)) continue;
        EXPECT_EQ(errnoOfErrorCode(code), number) << number;
    }
}

TEST(ErrorCode, TextsDoNotDependOnTheLocale)
{
    EXPECT_EQ(systemErrorText(2), OXA_TEXT("No such file or directory"));
    EXPECT_EQ(systemErrorText(112), OXA_TEXT("No space left on device"));
    EXPECT_TRUE(systemErrorText(0x20000001).empty());
}

}  // namespace

}  // namespace Oxa_1_1::platform
