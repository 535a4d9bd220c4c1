// com_ptr<I>: a counted reference to an interface.
//
// The one smart pointer for component references. Copying adds a reference,
// destruction releases it. put() hands out the address for [out] arguments and
// first lets go of what is held. Not synchronised.
#pragma once

#include <utility>

#include "platform/component.h"

struct attach_t
{};
inline constexpr attach_t attach_ref{};

template <class I>
class com_ptr
{
public:
    com_ptr() = default;
    com_ptr(std::nullptr_t) {}
    com_ptr(I* p) : m_p(p)
    {
        if (m_p)
            m_p->AddRef();
    }
    // Takes over the caller's reference.
    com_ptr(attach_t, I* p) : m_p(p) {}
    com_ptr(const com_ptr& other) : com_ptr(other.m_p) {}
    com_ptr(com_ptr&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    ~com_ptr() { reset(); }

    com_ptr& operator=(com_ptr other) noexcept
    {
        std::swap(m_p, other.m_p);
        return *this;
    }

    I* get() const { return m_p; }
    I* operator->() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }
    friend bool operator==(const com_ptr& a, const com_ptr& b) { return a.m_p == b.m_p; }

    void reset()
    {
        if (I* p = std::exchange(m_p, nullptr))
            p->Release();
    }

    // For an [out] argument that receives a reference.
    I** put()
    {
        reset();
        return &m_p;
    }
    void** put_void() { return reinterpret_cast<void**>(put()); }

    // Gives the reference to the caller.
    I* detach() { return std::exchange(m_p, nullptr); }

    // Null where the object lacks J; see query() for the result code.
    template <class J>
    com_ptr<J> as() const
    {
        com_ptr<J> result;
        if (m_p)
            m_p->QueryInterface(iid_of<J>, result.put_void());
        return result;
    }

private:
    I* m_p = nullptr;
};

// QueryInterface into a reference. A null object gives E_POINTER.
template <class J>
HRESULT query(IUnknown* object, com_ptr<J>& result)
{
    result.reset();
    return object ? object->QueryInterface(iid_of<J>, result.put_void()) : E_POINTER;
}
