// What the report library offers: a root object, which makes report bags and takes
// commands.
//
// A bag is a list of named values. It is made by the command "CREATE", filled in
// order, and handed back with a command: "INIT" opens the session with it, the empty
// command files it as a report of the kind in its value "$Type".
//
// Text is UTF-16. Both objects may be called from any thread, one bag by one thread
// at a time.
#pragma once

#include "platform/component.h"

namespace FaultmereUtil {

struct IReportBag : IUnknown
{
    // Adds a copy of the value under the name.
    virtual HRESULT STDMETHODCALLTYPE SetValue(LPCOLESTR szName, const VARIANT* pValue) = 0;
};

struct IReportRoot : IUnknown
{
    // pBag is borrowed, and null for most commands. ppNewBag is asked for by
    // "CREATE" alone and receives a reference. For a report the result is what to
    // do next: 1 stops in the debugger, E_ABORT ends the process.
    virtual HRESULT STDMETHODCALLTYPE Command(LPCOLESTR szCommand, IReportBag* pBag,
                                              IReportBag** ppNewBag) = 0;
    // Stands in for the bag of "INIT" where that is refused: szText is the client's
    // address as a decimal number.
    virtual HRESULT STDMETHODCALLTYPE Fallback(LPCOLESTR szText) = 0;
};

// The library's entry; gives a reference to the root object.
using FM_InitObject = HRESULT(STDMETHODCALLTYPE*)(IReportRoot** ppRoot);

} // namespace FaultmereUtil
