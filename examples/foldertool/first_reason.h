#pragma once

#include <string>

#include "base/filesystem/file_system_item.h"

namespace foldertool
{

/// While it lives, it notes why the first of several operations failed.
class FirstReason
{
   public:
    FirstReason();
    FirstReason(const FirstReason&) = delete;
    FirstReason& operator=(const FirstReason&) = delete;
    ~FirstReason();

    /// Of the last operation when none was reported.
    std::string text() const;

   private:
    std::string m_reason;
    Oxa_1_1::FileSystemItem::ErrorSink m_formerSink;
};

}  // namespace foldertool
