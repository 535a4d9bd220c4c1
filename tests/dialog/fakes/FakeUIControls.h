// The dialog as the control sees it.
#pragma once

#include "src/UIComponents/Windowless/UIControls.h"
#include "tests/dialog/fakes/Scripted.h"

namespace dialog_test {

class FakeUIControls final : public Hesperon::specifics::UILayer::IUIControls
{
public:
    explicit FakeUIControls(Script& script) : m_script(script) {}

    DATE m_first = 1, m_last = 2; // of the pickers
    ULONG m_nStartRow = 1;

    HRESULT GetDateFirst(VARIANT* pDate) override
    {
        return GiveDate(m_script.ResultOf("GetDateFirst"), pDate, m_first);
    }
    HRESULT GetDateLast(VARIANT* pDate) override
    {
        return GiveDate(m_script.ResultOf("GetDateLast"), pDate, m_last);
    }
    HRESULT GetStartRow(ULONG* pnRow) override
    {
        return Give(m_script.ResultOf("GetStartRow"), pnRow, m_nStartRow);
    }
    HRESULT SetFileLanguage(ULONG nCodePage) override
    {
        return m_script.Done("SetFileLanguage", std::to_string(nCodePage));
    }
    HRESULT SetControlsState(LONG nState) override
    {
        return m_script.Done("SetControlsState", std::to_string(nState));
    }
    HRESULT SetDateFirst(const VARIANT& vDate) override
    {
        if (vDate.vt == VT_DATE)
            m_first = vDate.date;
        return m_script.Done("SetDateFirst", DateNumber(vDate));
    }
    HRESULT SetDateFormat(LONG nMode) override
    {
        return m_script.Done("SetDateFormat", std::to_string(nMode));
    }
    HRESULT SetDateLast(const VARIANT& vDate) override
    {
        if (vDate.vt == VT_DATE)
            m_last = vDate.date;
        return m_script.Done("SetDateLast", DateNumber(vDate));
    }
    HRESULT SetUseBarsEndTime(bool bChecked) override
    {
        return m_script.Done("SetUseBarsEndTime", bChecked ? "on" : "off");
    }
    HRESULT SetStartRow(ULONG nRow) override
    {
        m_nStartRow = nRow;
        return m_script.Done("SetStartRow", std::to_string(nRow));
    }
    HRESULT SetMultiPrice(const OLECHAR* pszName) override
    {
        return m_script.Done("SetMultiPrice " + Utf8(pszName));
    }
    HRESULT SetMultiVolume(const OLECHAR* pszName) override
    {
        return m_script.Done("SetMultiVolume " + Utf8(pszName));
    }
    HRESULT SetResolution(ULONG nSize, ULONG nIndex) override
    {
        return m_script.Done("SetResolution", std::to_string(nSize) + " " + std::to_string(nIndex));
    }
    HRESULT ShowUseBarsEndTime(bool bShow) override
    {
        return m_script.Done("ShowUseBarsEndTime", bShow ? "yes" : "no");
    }
    HRESULT ResetStartRow() override { return m_script.Done("ResetStartRow"); }

private:
    Script& m_script;
};

} // namespace dialog_test
