#pragma once

namespace Oxa_1_1::test
{

/// A library with functions that call back, loaded as long as the object lives.
class Plugin
{
   public:
    Plugin();
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    template <class Body>
    void call(Body body) const
    {
        m_call([](void* data) { (*static_cast<Body*>(data))(); }, &body);
    }

   private:
    void* m_library;
    void (*m_call)(void (*)(void*), void*);
};

}  // namespace Oxa_1_1::test
