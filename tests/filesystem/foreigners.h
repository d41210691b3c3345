#pragma once

#include <memory>

#include "base/filesystem/file.h"
#include "base/filesystem/file_impl.h"

namespace Oxa_1_1::test
{

/// Sees to it that creators of others come before the library's own, so that all goes by virtual operations.
class ForeignersFirst
{
   public:
    ForeignersFirst() { File::creators.push_front(std::make_shared<Refuser>()); }
    ForeignersFirst(const ForeignersFirst&) = delete;
    ForeignersFirst& operator=(const ForeignersFirst&) = delete;
    ~ForeignersFirst() { File::creators.pop_front(); }

   private:
    class Refuser final : public File::ImplCreator
    {
        std::unique_ptr<IFileImpl> create(const Directory& /*folder*/, const String& /*name*/) const override
        {
            return nullptr;
        }
        std::unique_ptr<IFileImpl> create(const String& /*path*/) const override { return nullptr; }
    };
};

}  // namespace Oxa_1_1::test
