#pragma once

#include "base/export.h"
#include "base/object/uz_class.h"

namespace Oxa_1_1
{

/// What observers are told. It says whether the observation expires.
class OXA_API ObserverInfo
{
   public:
    /// Expires.
    ObserverInfo() noexcept = default;
    ObserverInfo(const ObserverInfo&) noexcept = default;
    ObserverInfo& operator=(const ObserverInfo&) noexcept = default;

    /// The class record "ObserverInfo".
    static const uZClass* Class();
    /// The class record of the dynamic type: derived classes give their own.
    virtual const uZClass* getClassType() const;
    virtual ~ObserverInfo();

    /// Whether the observation ends after this; it does unless told otherwise.
    /// @{
    void setExpire(bool expire) noexcept { m_expire = expire; }
    bool willExpire() const noexcept { return m_expire; }
    /// @}

   private:
    bool m_expire = true;
};

}  // namespace Oxa_1_1
