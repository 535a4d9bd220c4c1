// IQRLGUITweak: looks and resources, for the whole process.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct IQRLGUITweak : IDispatch
{
    // Looks of menus. Kept and handed to the menu library, where there is one.
    virtual HRESULT STDMETHODCALLTYPE get_MenuStyle(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_MenuStyle(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_MenuEffect(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_MenuEffect(LONG newVal) = 0;
    // The module from which dialogs and texts are loaded. Elsewhere than on Windows the
    // address of a TabulexStringTable; 0 brings the component's own back.
    virtual HRESULT STDMETHODCALLTYPE get_ResourceHandle(LONG_PTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ResourceHandle(LONG_PTR newVal) = 0;
    // A flag of the calling thread: 0 or 0xFFFF, whatever was put.
    virtual HRESULT STDMETHODCALLTYPE get_ModelessProgress(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ModelessProgress(VARIANT_BOOL newVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {A5889D60-1C3E-40BD-B725-EA22BD948822}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IQRLGUITweak> = {
    0xA5889D60, 0x1C3E, 0x40BD, {0xB7, 0x25, 0xEA, 0x22, 0xBD, 0x94, 0x88, 0x22}};
