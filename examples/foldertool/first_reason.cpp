#include "examples/foldertool/first_reason.h"

#include <utility>

#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

FirstReason::FirstReason()
    : m_formerSink(FileSystemItem::setErrorSink(
          [this](const String&)
          {
              if (m_reason.empty()) m_reason = lastReason();
          }))
{
}

FirstReason::~FirstReason() { FileSystemItem::setErrorSink(std::move(m_formerSink)); }

std::string FirstReason::text() const { return m_reason.empty() ? lastReason() : m_reason; }

}  // namespace foldertool
