// What the fakes of objects share: they write each call down, and answer with a result that the
// test may set by the call's name.
#pragma once

#include <map>

#include "platform/com_ptr.h"
#include "tests/dialog/fakes/CallLog.h"
#include "tests/support/Text.h"

namespace dialog_test {

// The results by name, and the log: one for all fakes of a test.
class Script
{
public:
    std::map<std::string, HRESULT> m_results; // others give S_OK

    // Writes a change down, and gives its result.
    HRESULT Done(const std::string& sName, const std::string& sValue = {})
    {
        m_log.Add(sValue.empty() ? sName : sName + " " + sValue);
        return ResultOf(sName);
    }
    // Reads aren't written down.
    HRESULT ResultOf(const std::string& sName) const
    {
        const auto found = m_results.find(sName);
        return found == m_results.end() ? S_OK : found->second;
    }
    Calls Take() { return m_log.Take(); }

private:
    CallLog m_log;
};

// A date as its number of days, without needless zeros.
inline std::string DateNumber(const VARIANT& vDate)
{
    if (vDate.vt != VT_DATE)
        return "no date";
    char text[32];
    std::snprintf(text, sizeof text, "%g", vDate.date);
    return text;
}

template <class T>
HRESULT Give(HRESULT hr, T* pOut, const T& value)
{
    if (SUCCEEDED(hr))
        *pOut = value;
    return hr;
}

inline HRESULT GiveDate(HRESULT hr, VARIANT* pOut, DATE date)
{
    if (SUCCEEDED(hr)) {
        pOut->vt = VT_DATE;
        pOut->date = date;
    }
    return hr;
}

template <class Object>
HRESULT GiveObject(HRESULT hr, IDispatch** ppOut, const com_ptr<Object>& pObject)
{
    *ppOut = nullptr;
    if (SUCCEEDED(hr))
        *ppOut = com_ptr<Object>(pObject).detach();
    return hr;
}

} // namespace dialog_test
