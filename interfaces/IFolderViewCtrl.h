// IFolderViewCtrl: a list of a folder's files, in which the user picks one.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual. Used by one thread.
struct IFolderViewCtrl : IDispatch
{
    // The selected file, whole path; empty where no file is selected. A put opens the file's
    // folder and selects it, without calling onchange; E_INVALIDARG for what is no file, a link
    // stands for its target.
    virtual HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) = 0;
    // VT_DISPATCH, by value or reference: called through its default member, without
    // arguments, when the user has selected something else; VT_EMPTY for none.
    virtual HRESULT STDMETHODCALLTYPE put_onchange(VARIANT newVal) = 0;
    // The folder that is shown. An empty one changes nothing.
    virtual HRESULT STDMETHODCALLTYPE get_Folder(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Folder(BSTR newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Title(BSTR* pVal) = 0; // kept for the host
    virtual HRESULT STDMETHODCALLTYPE put_Title(BSTR newVal) = 0;
    // Freezes folder and selection; onchange isn't called meanwhile.
    virtual HRESULT STDMETHODCALLTYPE get_disabled(BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_disabled(BOOL newVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {B2F0D7C4-5E19-4A83-8D26-71C3E90A4F68}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IFolderViewCtrl> = {
    0xB2F0D7C4, 0x5E19, 0x4A83, {0x8D, 0x26, 0x71, 0xC3, 0xE9, 0x0A, 0x4F, 0x68}};
