// CqrlValueMultiplier: scales each value of a column by a power of ten.
//
// The first value after a change of the transform decides whether the column holds
// integers or floats. From then on a value costs one indirect call and one operation,
// and its payload is read as the first value's was, whatever its kind. Callers keep
// to one kind a column. A payload that is an address, such as a text's, isn't touched.
//
// No lock: an object belongs to one front object, whose conversions run one after
// the other. The transform must not be changed while values pass through.
#pragma once

#include <cstdint>

#include "interfaces/IValueMultiplier.h"
#include "module/ComObject.h"
#include "src/values/IKeepsValues.h"

namespace Hesperon::specifics {

class CqrlValueMultiplier
    : public ComObject<CqrlValueMultiplier, Dual<IQRL_TabulexConverter::IValueMultiplier>,
                       IKeepsValues>
{
public:
    // Starts at "1", which lets every value through as it is.
    CqrlValueMultiplier();

    // ---- IValueMultiplier

    HRESULT STDMETHODCALLTYPE ApplyTransform(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE get_TransformNames(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE get_Current(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Current(BSTR newVal) override;

    bool STDMETHODCALLTYPE KeepsValues() override;

    // ---- the transform by its one-byte code

    // As put_Current; E_INVALIDARG, and no change, for an unknown code.
    HRESULT SetCode(BYTE nCode);
    BYTE Code() const;

private:
    using Transform = void (*)(CqrlValueMultiplier& self, VARIANT* pVal);

    static void AnalyzeValue(CqrlValueMultiplier& self, VARIANT* pVal);
    Transform TransformFor(const VARIANT* pVal) const;
    HRESULT Select(std::uint64_t nRow);

    std::uint64_t m_nCurrent; // row in the table of transforms
    Transform m_fnTransform;  // replaces itself at the first value
};

} // namespace Hesperon::specifics
