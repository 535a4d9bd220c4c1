// Owners for the values of platform/component.h: Bstr, Variant and SafeArray.
//
// They free what they hold; put() hands out the address for [out] arguments and
// first frees the old value. None of them is synchronised. Running out of memory
// throws std::bad_alloc.
#pragma once

#include <new>
#include <utility>

#include "platform/component.h"

inline string_view_t TextOf(BSTR text)
{
    return text ? string_view_t(text, SysStringLen(text)) : string_view_t();
}

// A new BSTR that the caller must free or hand on.
inline BSTR NewBstr(string_view_t text)
{
    BSTR p = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!p)
        throw std::bad_alloc();
    return p;
}

class Bstr
{
public:
    Bstr() = default;
    explicit Bstr(string_view_t text) : m_p(NewBstr(text)) {}
    Bstr(const Bstr& other) : m_p(other.m_p ? NewBstr(other.view()) : nullptr) {}
    Bstr(Bstr&& other) noexcept : m_p(other.detach()) {}
    ~Bstr() { SysFreeString(m_p); }
    Bstr& operator=(Bstr other) noexcept
    {
        std::swap(m_p, other.m_p);
        return *this;
    }

    BSTR get() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }
    string_view_t view() const { return TextOf(m_p); }
    string_t str() const { return string_t(view()); }
    BSTR* put()
    {
        SysFreeString(std::exchange(m_p, nullptr));
        return &m_p;
    }
    BSTR detach() { return std::exchange(m_p, nullptr); }

private:
    BSTR m_p = nullptr;
};

// VariantClear for a value that is its owner's alone; most are plain numbers, which need no
// call.
inline void ClearValue(VARIANT& value)
{
    if (value.vt > VT_DATE && (value.vt < VT_I1 || value.vt > VT_UINT))
        VariantClear(&value);
    value.vt = VT_EMPTY;
}

class Variant : public VARIANT
{
public:
    Variant() { vt = VT_EMPTY; }
    Variant(const Variant& other) : Variant(static_cast<const VARIANT&>(other)) {}
    explicit Variant(const VARIANT& other)
    {
        VariantInit(this);
        if (FAILED(VariantCopy(this, const_cast<VARIANT*>(&other))))
            throw std::bad_alloc();
    }
    Variant(Variant&& other) noexcept : VARIANT(other) { VariantInit(&other); }
    ~Variant() { Free(); }
    Variant& operator=(Variant other) noexcept
    {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }

    static Variant FromI4(LONG value)
    {
        Variant v;
        v.vt = VT_I4;
        v.lVal = value;
        return v;
    }
    static Variant FromDate(DATE value)
    {
        Variant v;
        v.vt = VT_DATE;
        v.date = value;
        return v;
    }
    static Variant FromText(string_view_t text)
    {
        Variant v;
        v.bstrVal = NewBstr(text);
        v.vt = VT_BSTR;
        return v;
    }
    // Takes over the array; vt is that of its elements.
    static Variant FromArray(SAFEARRAY* array, VARTYPE vt)
    {
        Variant v;
        v.vt = static_cast<VARTYPE>(VT_ARRAY | vt);
        v.parray = array;
        return v;
    }

    VARIANT* put()
    {
        Free();
        return this;
    }
    // Moves the value out to the caller; this becomes VT_EMPTY.
    VARIANT detach()
    {
        VARIANT v = *this;
        vt = VT_EMPTY;
        return v;
    }

private:
    void Free() { ClearValue(*this); }
};

class SafeArray
{
public:
    SafeArray() = default;
    explicit SafeArray(SAFEARRAY* array) : m_p(array) {}
    SafeArray(SafeArray&& other) noexcept : m_p(other.detach()) {}
    ~SafeArray()
    {
        if (m_p)
            SafeArrayDestroy(m_p);
    }
    SafeArray& operator=(SafeArray other) noexcept
    {
        std::swap(m_p, other.m_p);
        return *this;
    }

    SAFEARRAY* get() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }
    SAFEARRAY* detach() { return std::exchange(m_p, nullptr); }

private:
    SAFEARRAY* m_p = nullptr;
};
