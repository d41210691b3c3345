#pragma once

#include <cstdint>
#include <string>

#include "base/export.h"

namespace Oxa_1_1
{

/// Narrow text tagged with its code page. A view: it owns nothing, and the caller keeps the bytes alive while it is
/// in use. Made through a derived class, which knows the code page.
class OXA_API CodePageInterface
{
   public:
    CodePageInterface(const CodePageInterface&) = default;
    CodePageInterface& operator=(const CodePageInterface&) = default;
    virtual ~CodePageInterface() = default;

    /// The Windows number of the code page.
    [[nodiscard]] std::uint32_t codePage() const noexcept { return m_codePage; }
    /// The zero-terminated bytes; null stands for NIL.
    [[nodiscard]] const char* data() const noexcept { return m_data; }

   protected:
    /// `data` ends with a zero, or is null for NIL.
    CodePageInterface(const char* data, std::uint32_t codePage) noexcept : m_codePage(codePage), m_data(data) {}

   private:
    std::uint32_t m_codePage;
    const char* m_data;
};

/// Narrow text in UTF-8: String(UTF8Interface("\xC3\xA4")) is one a-umlaut.
class OXA_API UTF8Interface : public CodePageInterface
{
   public:
    /// The Windows number of UTF-8.
    static constexpr std::uint32_t CODE_PAGE = 65001;

    /// `data` ends with a zero, or is null for NIL.
    explicit UTF8Interface(const char* data) noexcept : CodePageInterface(data, CODE_PAGE) {}
    /// A view up to the first zero: `text` is to outlive it. String::fromUTF8() takes embedded zeros, too.
    explicit UTF8Interface(const std::string& text) noexcept : UTF8Interface(text.c_str()) {}
    UTF8Interface(const UTF8Interface&) = default;
    UTF8Interface& operator=(const UTF8Interface&) = default;
    ~UTF8Interface() override = default;
};

}  // namespace Oxa_1_1
