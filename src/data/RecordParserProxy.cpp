#include "src/data/RecordParserProxy.h"

#include "src/files/Proxies.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

void CRecordParserProxy::Attach(IRecordParser* pTarget)
{
    const ProxyLockGuard lock;
    m_pTarget = pTarget;
}

void CRecordParserProxy::Detach()
{
    Attach(nullptr);
}

// The reference is taken under the lock, and the call made without it: a parse may take long, and
// may come back to the data parser.
com_ptr<IRecordParser> CRecordParserProxy::Target()
{
    com_ptr<IRecordParser> pTarget;
    const ProxyLockGuard lock;
    if (m_pTarget)
        query(m_pTarget, pTarget);
    return pTarget;
}

template <class Call>
HRESULT CRecordParserProxy::Forward(Call call)
{
    const com_ptr<IRecordParser> pTarget = Target();
    return pTarget ? call(*pTarget.get()) : S_OK;
}

HRESULT CRecordParserProxy::Parse(BSTR bsRecord)
{
    return Forward([&](IRecordParser& target) { return target.Parse(bsRecord); });
}

HRESULT CRecordParserProxy::Clone(IDispatch** newObj)
{
    return Forward([&](IRecordParser& target) { return target.Clone(newObj); });
}

HRESULT CRecordParserProxy::RemoveTemplate(ULONG nField, BSTR Template)
{
    return Forward([&](IRecordParser& target) { return target.RemoveTemplate(nField, Template); });
}

HRESULT CRecordParserProxy::CheckResolution(VARIANT LastDateTime, BSTR* ResolutionError,
                                            IDispatch* pHost)
{
    return Forward([&](IRecordParser& target) {
        return target.CheckResolution(LastDateTime, ResolutionError, pHost);
    });
}

HRESULT CRecordParserProxy::IsValidResolution()
{
    return Forward([&](IRecordParser& target) { return target.IsValidResolution(); });
}

HRESULT CRecordParserProxy::GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField)
{
    return Forward(
        [&](IRecordParser& target) { return target.GetFieldText(bsRecord, nField, bsField); });
}

HRESULT CRecordParserProxy::GetFieldIndex(LONG DataType, ULONG* Index)
{
    return Forward([&](IRecordParser& target) { return target.GetFieldIndex(DataType, Index); });
}

HRESULT CRecordParserProxy::GetFieldType(ULONG nField, LONG* nType)
{
    return Forward([&](IRecordParser& target) { return target.GetFieldType(nField, nType); });
}

HRESULT CRecordParserProxy::SetFieldType(ULONG nField, LONG nType)
{
    return Forward([&](IRecordParser& target) { return target.SetFieldType(nField, nType); });
}

HRESULT CRecordParserProxy::get_LackedFields(VARIANT* pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_LackedFields(pVal); });
}

HRESULT CRecordParserProxy::get_DuplicatedField(BSTR* pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_DuplicatedField(pVal); });
}

HRESULT CRecordParserProxy::get_PriceMultiplier(IDispatch** pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_PriceMultiplier(pVal); });
}

HRESULT CRecordParserProxy::put_PriceMultiplier(IDispatch* newVal)
{
    return Forward([&](IRecordParser& target) { return target.put_PriceMultiplier(newVal); });
}

HRESULT CRecordParserProxy::get_VolumeMultiplier(IDispatch** pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_VolumeMultiplier(pVal); });
}

HRESULT CRecordParserProxy::put_VolumeMultiplier(IDispatch* newVal)
{
    return Forward([&](IRecordParser& target) { return target.put_VolumeMultiplier(newVal); });
}

HRESULT CRecordParserProxy::get_SmartResolutionEnabled(VARIANT_BOOL* pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_SmartResolutionEnabled(pVal); });
}

HRESULT CRecordParserProxy::put_SmartResolutionEnabled(VARIANT_BOOL newVal)
{
    return Forward(
        [&](IRecordParser& target) { return target.put_SmartResolutionEnabled(newVal); });
}

HRESULT CRecordParserProxy::get_FieldDividers(LONG* pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_FieldDividers(pVal); });
}

HRESULT CRecordParserProxy::put_FieldDividers(LONG newVal)
{
    return Forward([&](IRecordParser& target) { return target.put_FieldDividers(newVal); });
}

HRESULT CRecordParserProxy::get_UseBarsEndTime(VARIANT_BOOL* pVal)
{
    return Forward([&](IRecordParser& target) { return target.get_UseBarsEndTime(pVal); });
}

HRESULT CRecordParserProxy::put_UseBarsEndTime(VARIANT_BOOL newVal)
{
    return Forward([&](IRecordParser& target) { return target.put_UseBarsEndTime(newVal); });
}

} // namespace Hesperon::specifics
