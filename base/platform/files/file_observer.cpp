#include "base/platform/files/file_observer.h"

#include <atomic>

namespace Oxa_1_1::platform
{

namespace
{

constinit std::atomic<FileObserver*> observerOfAll = nullptr;

}  // namespace

FileObserver* setFileObserver(FileObserver* observer) noexcept { return observerOfAll.exchange(observer); }

FileObserver* fileObserver() noexcept { return observerOfAll.load(std::memory_order_acquire); }

}  // namespace Oxa_1_1::platform
