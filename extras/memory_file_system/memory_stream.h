#pragma once

#include <fstream>
#include <sstream>
#include <string>

#include "extras/memory_file_system/memory_item.h"

namespace Oxa_1_1
{

/// Reads a content that it holds.
class MemoryInput final : public std::ifstream
{
   public:
    /// Failed unless `code` is 0.
    MemoryInput(MemoryError code, const std::string& content) : m_buffer(content, std::ios_base::in)
    {
        std::ios::rdbuf(&m_buffer);
        if (code != memory_error::NONE) setstate(std::ios_base::failbit);
    }

   private:
    std::stringbuf m_buffer;
};

/// Writes to a file in memory when it is flushed and at its end.
class MemoryOutput final : public std::ofstream
{
   public:
    MemoryOutput(const MemoryPlace& folder, const String& name, std::ios_base::openmode mode)
        : m_buffer(folder, name, mode)
    {
        std::ios::rdbuf(&m_buffer);
        if (m_buffer.pubsync() != 0) setstate(std::ios_base::failbit);
    }
    MemoryOutput(const MemoryOutput&) = delete;
    MemoryOutput& operator=(const MemoryOutput&) = delete;
    ~MemoryOutput() override { flush(); }

   private:
    class Buffer final : public std::stringbuf
    {
       public:
        Buffer(const MemoryPlace& folder, const String& name, std::ios_base::openmode mode)
            : std::stringbuf(std::ios_base::out | std::ios_base::ate), m_place(folder), m_name(name)
        {
            std::string content;
            if ((mode & std::ios_base::app) != 0) m_place.volume->read(m_place.pathOf(m_name), content);
            str(content);
        }

       protected:
        int sync() override { return m_place.volume->write(m_place.pathOf(m_name), str()) == 0 ? 0 : -1; }

       private:
        MemoryPlace m_place;
        String m_name;
    };

    Buffer m_buffer;
};

}  // namespace Oxa_1_1
