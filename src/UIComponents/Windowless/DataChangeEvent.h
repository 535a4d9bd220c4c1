// CDataChangeEvent: forwards the change of a column from the grid to the control of the dialog.
//
// It may outlive the control, as long as a grid holds it; the control takes itself out before it
// goes. Used on the dialog's thread.
#pragma once

#include "interfaces/IDataChangeSink.h"
#include "module/ComObject.h"
#include "module/Guarded.h"
#include "src/UIComponents/Windowless/EventSinks.h"

namespace Hesperon::specifics {

class CDataChangeEvent
    : public ComObject<CDataChangeEvent, Dual<IQRL_TabulexConverter::IDataChangeSink>>
{
public:
    void PointAt(notify::IDataChangeEventSink* pSink) { m_pSink = pSink; } // null for nobody

    HRESULT STDMETHODCALLTYPE OnDataChanged() override
    {
        return Guarded([&] {
            if (m_pSink)
                m_pSink->OnDataChanged();
            return S_OK;
        });
    }

private:
    notify::IDataChangeEventSink* m_pSink = nullptr;
};

} // namespace Hesperon::specifics
