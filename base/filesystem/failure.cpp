#include "base/filesystem/failure.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/diagnostics/windows_error.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

namespace
{

struct Condition
{
    int code;
    std::errc condition;
};

/// Sorted by code. What stands here is what operations on files fail with.
constexpr Condition CONDITIONS[]{
    {1, std::errc::function_not_supported},
    {2, std::errc::no_such_file_or_directory},
    {3, std::errc::no_such_file_or_directory},
    {4, std::errc::too_many_files_open},
    {5, std::errc::permission_denied},
    {6, std::errc::bad_file_descriptor},
    {8, std::errc::not_enough_memory},
    {14, std::errc::not_enough_memory},
    {15, std::errc::no_such_device},
    {17, std::errc::cross_device_link},
    {19, std::errc::read_only_file_system},
    {20, std::errc::no_such_device},
    {21, std::errc::resource_unavailable_try_again},
    {23, std::errc::io_error},
    {29, std::errc::io_error},
    {30, std::errc::io_error},
    {32, std::errc::device_or_resource_busy},
    {33, std::errc::device_or_resource_busy},
    {36, std::errc::no_lock_available},
    {39, std::errc::no_space_on_device},
    {50, std::errc::not_supported},
    {53, std::errc::no_such_file_or_directory},
    {65, std::errc::permission_denied},
    {67, std::errc::no_such_file_or_directory},
    {80, std::errc::file_exists},
    {82, std::errc::permission_denied},
    {87, std::errc::invalid_argument},
    {109, std::errc::broken_pipe},
    {112, std::errc::no_space_on_device},
    {120, std::errc::function_not_supported},
    {123, std::errc::invalid_argument},
    {145, std::errc::directory_not_empty},
    {161, std::errc::invalid_argument},
    {170, std::errc::device_or_resource_busy},
    {183, std::errc::file_exists},
    {206, std::errc::filename_too_long},
    {223, std::errc::file_too_large},
    {232, std::errc::broken_pipe},
    {267, std::errc::not_a_directory},
    {336, std::errc::is_a_directory},
    {534, std::errc::value_too_large},
    {995, std::errc::operation_canceled},
    {1006, std::errc::io_error},
    {1117, std::errc::io_error},
    {1142, std::errc::too_many_links},
    {1223, std::errc::operation_canceled},
    {1235, std::errc::operation_canceled},
    {1295, std::errc::no_space_on_device},
    {1314, std::errc::operation_not_permitted},
    {1392, std::errc::io_error},
    {1460, std::errc::timed_out},
    {1921, std::errc::too_many_symbolic_link_levels},
    {4390, std::errc::invalid_argument},
    {10004, std::errc::interrupted},
};
static_assert(std::ranges::is_sorted(CONDITIONS, {}, &Condition::code));

class WindowsCategory final : public std::error_category
{
   public:
    const char* name() const noexcept override { return "windows"; }

    std::string message(int code) const override
    {
        return getWindowsError(static_cast<std::uint32_t>(code)).stringUTF8();
    }

    std::error_condition default_error_condition(int code) const noexcept override
    {
        const auto* const found = std::ranges::lower_bound(CONDITIONS, code, {}, &Condition::code);
        if (found == std::end(CONDITIONS) || found->code != code) return {code, *this};
        return std::make_error_condition(found->condition);
    }
};

/// Without the mark of paths of any length, which people do not write.
String readable(TextView path)
{
    constexpr TextView LONG_SHARE = OXA_TEXT("\\\\?\\UNC\\");
    constexpr TextView LONG_PATH = OXA_TEXT("\\\\?\\");
    if (path.empty()) return {};
    if (path.starts_with(LONG_SHARE)) return Text(2, '\\').append(path.substr(LONG_SHARE.size()));
    if (path.starts_with(LONG_PATH)) path.remove_prefix(LONG_PATH.size());
    return path;
}

}  // namespace

const std::error_category& windowsCategory() noexcept
{
    static const platform::NeverDestroyed<WindowsCategory> category;
    return category.get();
}

std::error_code makeWindowsError(unsigned long code) noexcept { return {static_cast<int>(code), windowsCategory()}; }

String Failure::message() const
{
    String text = String::fromUTF8(operation);
    if (!path.isNil()) text << OXA_TEXT(" ") << path;
    if (!target.isNil()) text << OXA_TEXT(" to ") << target;
    text << OXA_TEXT(": ") << getWindowsError(static_cast<std::uint32_t>(code.value()));
    return text;
}

std::optional<Failure> lastFailure()
{
    const platform::FailedStep* const step = platform::failedStep();
    if (step == nullptr || step->operation.empty()) return std::nullopt;
    return Failure{.operation = step->operation,
                   .path = readable(step->path),
                   .target = readable(step->target),
                   .code = makeWindowsError(step->code)};
}

void forgetFailure() noexcept { platform::forgetFailedStep(); }

}  // namespace Oxa_1_1
