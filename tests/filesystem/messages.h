#pragma once

#include <vector>

#include "base/filesystem/file_system_item.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

/// Collects what is reported while it lives.
class Messages
{
   public:
    Messages()
    {
        m_former = FileSystemItem::setErrorSink([this](const String& message) { m_texts.push_back(message); });
    }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages() { FileSystemItem::setErrorSink(m_former); }

    /// What came since the last call.
    std::vector<String> take() { return std::exchange(m_texts, {}); }

   private:
    FileSystemItem::ErrorSink m_former;
    std::vector<String> m_texts;
};

using Texts = std::vector<String>;

}  // namespace Oxa_1_1::test
