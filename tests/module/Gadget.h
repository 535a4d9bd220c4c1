// IGadget: an interface with a row of each kind, and an object of it that notes
// its calls.
#pragma once

#include <string>
#include <vector>

#include "module/ComObject.h"
#include "module/DispatchRow.h"
#include "platform/values.h"

struct IGadget : IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE Rest() = 0;
    virtual HRESULT STDMETHODCALLTYPE Take(LONG nCount, BSTR bsText, IDispatch* pObject) = 0;
    virtual HRESULT STDMETHODCALLTYPE TakeMany(ULONG a, LONGLONG b, ULONGLONG c, FLOAT d,
                                               VARIANT_BOOL e) = 0;
    virtual HRESULT STDMETHODCALLTYPE TakeAny(VARIANT Value) = 0;
    virtual HRESULT STDMETHODCALLTYPE Fill(LONG* nCount, BSTR* bsText) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Level(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Level(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Label(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Names(VARIANT* pVal) = 0;
};

template <>
inline constexpr GUID iid_of<IGadget> = {0x6A0C3A51, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};

template <>
std::span<const DispatchRow> DispatchTable<IGadget>();

class Gadget final : public ComObject<Gadget, Dual<IGadget>>
{
public:
    HRESULT STDMETHODCALLTYPE Rest() override { return Called("Rest"); }
    HRESULT STDMETHODCALLTYPE Take(LONG nCount, BSTR bsText, IDispatch* pObject) override
    {
        m_nCount = nCount;
        m_sText = TextOf(bsText);
        m_pObject = pObject;
        return Called("Take");
    }
    HRESULT STDMETHODCALLTYPE TakeMany(ULONG a, LONGLONG b, ULONGLONG c, FLOAT d,
                                       VARIANT_BOOL e) override
    {
        m_many = {static_cast<double>(a), static_cast<double>(b), static_cast<double>(c), d,
                  static_cast<double>(e)};
        return Called("TakeMany");
    }
    HRESULT STDMETHODCALLTYPE TakeAny(VARIANT Value) override
    {
        m_nKind = Value.vt;
        m_nCount = Value.vt == VT_I4 ? Value.lVal : -1;
        return Called("TakeAny");
    }
    HRESULT STDMETHODCALLTYPE Fill(LONG* nCount, BSTR* bsText) override
    {
        *nCount += 1;
        SysFreeString(*bsText);
        *bsText = NewBstr(OLESTR("filled"));
        return Called("Fill");
    }
    HRESULT STDMETHODCALLTYPE get_Level(LONG* pVal) override
    {
        *pVal = m_nLevel;
        return Called("get_Level");
    }
    HRESULT STDMETHODCALLTYPE put_Level(LONG newVal) override
    {
        m_nLevel = newVal;
        return Called("put_Level");
    }
    HRESULT STDMETHODCALLTYPE get_Label(BSTR* pVal) override
    {
        if (SUCCEEDED(m_hr))
            *pVal = NewBstr(OLESTR("label"));
        return Called("get_Label");
    }
    HRESULT STDMETHODCALLTYPE get_Names(VARIANT* pVal) override
    {
        if (SUCCEEDED(m_hr))
            *pVal = Variant::FromText(OLESTR("names")).detach();
        return Called("get_Names");
    }

    HRESULT m_hr = S_OK; // what all operations give
    std::string m_sCalls;
    LONG m_nLevel = 3;
    LONG m_nCount = 0;
    string_t m_sText;
    IDispatch* m_pObject = nullptr;
    std::vector<double> m_many;
    VARTYPE m_nKind = VT_EMPTY;

private:
    HRESULT Called(const char* szName)
    {
        m_sCalls += szName;
        return m_hr;
    }
};
