// Dispatch over the rows of a table: names are compared one after the other, since a table
// has some dozens of rows and hosts keep the numbers. A call takes its arguments into an array
// in declared order, borrowed where the kind fits and copied where it is coerced, and the row
// calls the member with them.

#include "module/Dispatch.h"

#include <algorithm>

#include "module/DispatchRow.h"
#include "module/TypeLibrary.h"

namespace {

OLECHAR FoldAscii(OLECHAR c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<OLECHAR>(c + 32) : c;
}

bool SameName(string_view_t a, string_view_t b)
{
    return std::ranges::equal(a, b, {}, FoldAscii, FoldAscii);
}

bool IsNameOf(const DispatchRow& row, string_view_t sName)
{
    if (SameName(row.sName, sName))
        return true;
    if (row.kind == DispatchRow::Kind::Method || sName.size() < 4 ||
        !SameName(sName.substr(4), row.sName))
        return false;
    const string_view_t sPrefix = sName.substr(0, 4);
    return (row.pfnGet && SameName(sPrefix, OLESTR("get_"))) ||
           (row.call.pfnCall && SameName(sPrefix, OLESTR("put_")));
}

// A null name is one that no table has.
string_view_t NameOrEmpty(LPOLESTR name)
{
    return name ? string_view_t(name) : string_view_t();
}

const DispatchRow* FindRow(std::span<const DispatchRow> table, string_view_t sName)
{
    const auto row = std::ranges::find_if(table, [&](auto& r) { return IsNameOf(r, sName); });
    return row == table.end() ? nullptr : &*row;
}

const DispatchRow* FindRow(std::span<const DispatchRow> table, DISPID id)
{
    const auto row = std::ranges::find(table, id, &DispatchRow::nId);
    return row == table.end() ? nullptr : &*row;
}

// The place of an argument's name in one operation, DISPID_UNKNOWN if it has none.
DISPID ArgumentPlace(const DispatchRow& row, string_view_t sName)
{
    for (std::size_t i = 0; i < row.arguments.size() && !row.arguments[i].empty(); ++i)
        if (SameName(row.arguments[i], sName))
            return static_cast<DISPID>(i);
    return DISPID_UNKNOWN;
}

DISPID FindName(std::span<const DispatchRow> table, const DispatchRow* operation,
                string_view_t sName)
{
    if (const DispatchRow* row = FindRow(table, sName))
        return row->nId;
    if (operation)
        if (const DISPID place = ArgumentPlace(*operation, sName); place != DISPID_UNKNOWN)
            return place;
    for (const DispatchRow& row : table)
        if (const DISPID place = ArgumentPlace(row, sName); place != DISPID_UNKNOWN)
            return place;
    return DISPID_UNKNOWN;
}

UINT ArgumentCount(const DispatchRow& row)
{
    return row.call.nArguments;
}

// The caller's arguments in declared order, each of its declared kind. By-reference
// values and those that need no coercion are borrowed, the rest are copies.
class Arguments
{
public:
    ~Arguments()
    {
        for (VARIANT& copy : m_copies)
            VariantClear(&copy);
    }

    // The caller's array has the last argument first.
    HRESULT Take(const DispatchCall& call, const DISPPARAMS& params, UINT* argument)
    {
        for (VARIANT& copy : m_copies)
            VariantInit(&copy);
        for (UINT i = 0; i < call.nArguments; ++i) {
            const UINT at = params.cArgs - 1 - i;
            if (SUCCEEDED(TakeOne(call.kinds[i], params.rgvarg[at], i)))
                continue;
            if (argument)
                *argument = at;
            return DISP_E_TYPEMISMATCH;
        }
        return S_OK;
    }

    VARIANT* Values() { return m_values.data(); }

private:
    HRESULT TakeOne(VARTYPE kind, VARIANT& given, UINT i)
    {
        m_values[i] = given;
        if (given.vt == kind)
            return S_OK;
        if (kind & VT_BYREF)
            return DISP_E_TYPEMISMATCH;
        if (kind == VT_VARIANT) {
            if (given.vt == (VT_BYREF | VT_VARIANT))
                m_values[i] = *given.pvarVal;
            return S_OK;
        }
        const HRESULT hr = VariantChangeType(&m_copies[i], &given, 0, kind);
        m_values[i] = m_copies[i];
        return hr;
    }

    std::array<VARIANT, kMaxDispatchArguments> m_values;
    std::array<VARIANT, kMaxDispatchArguments> m_copies;
};

void FillException(EXCEPINFO* exception, HRESULT hr)
{
    if (!exception)
        return;
    *exception = EXCEPINFO{};
    exception->scode = hr;
}

HRESULT Get(const DispatchRow& row, void* pInterface, const DISPPARAMS& params, VARIANT* result,
            EXCEPINFO* exception)
{
    if (params.cArgs != 0)
        return DISP_E_BADPARAMCOUNT;
    Variant value;
    const HRESULT hr = row.pfnGet(pInterface, &value);
    if (FAILED(hr))
        FillException(exception, hr);
    else if (result)
        *result = value.detach();
    return hr;
}

HRESULT Call(const DispatchCall& call, void* pInterface, const DISPPARAMS& params, UINT* argument,
             EXCEPINFO* exception)
{
    if (params.cArgs != call.nArguments)
        return DISP_E_BADPARAMCOUNT;
    Arguments arguments;
    HRESULT hr = arguments.Take(call, params, argument);
    if (FAILED(hr))
        return hr;
    hr = call.pfnCall(pInterface, arguments.Values());
    if (FAILED(hr))
        FillException(exception, hr);
    return hr;
}

HRESULT CallProperty(const DispatchRow& row, void* pInterface, WORD flags, const DISPPARAMS& params,
                     VARIANT* result, UINT* argument, EXCEPINFO* exception)
{
    if ((flags & DISPATCH_PROPERTYGET) && row.pfnGet)
        return Get(row, pInterface, params, result, exception);
    if ((flags & DISPATCH_PROPERTYPUT) && row.call.pfnCall)
        return Call(row.call, pInterface, params, argument, exception);
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT CallRow(const DispatchRow& row, void* pInterface, WORD flags, const DISPPARAMS& params,
                VARIANT* result, UINT* argument, EXCEPINFO* exception)
{
    switch (row.kind) {
    case DispatchRow::Kind::Method:
        return Call(row.call, pInterface, params, argument, exception);
    case DispatchRow::Kind::Result:
        return Get(row, pInterface, params, result, exception);
    case DispatchRow::Kind::Property:
        break;
    }
    return CallProperty(row, pInterface, flags, params, result, argument, exception);
}

bool HasOnlyPutName(const DISPPARAMS& params)
{
    return params.cNamedArgs == 0 || (params.cNamedArgs == 1 && params.rgdispidNamedArgs &&
                                      params.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT);
}

} // namespace

HRESULT DispatchGetIDsOfNames(std::span<const DispatchRow> table, LPOLESTR* names, UINT nNames,
                              DISPID* ids)
{
    if (!names || !ids)
        return E_POINTER;
    const DispatchRow* operation = nNames ? FindRow(table, NameOrEmpty(names[0])) : nullptr;
    HRESULT hr = S_OK;
    for (UINT i = 0; i < nNames; ++i) {
        ids[i] = FindName(table, operation, NameOrEmpty(names[i]));
        if (ids[i] == DISPID_UNKNOWN)
            hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
}

HRESULT DispatchInvoke(std::span<const DispatchRow> table, void* pInterface, DISPID id, WORD flags,
                       DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument)
{
    if (!params)
        return DISP_E_BADVARTYPE;
    const DispatchRow& widest = std::ranges::max(table, {}, ArgumentCount);
    if (params->cArgs > widest.call.nArguments)
        return DISP_E_BADPARAMCOUNT;
    if (result)
        VariantInit(result);
    if (!HasOnlyPutName(*params))
        return DISP_E_NONAMEDARGS;
    const DispatchRow* row = FindRow(table, id);
    if (!row)
        return DISP_E_MEMBERNOTFOUND;
    return CallRow(*row, pInterface, flags, *params, result, argument, exception);
}

UINT DispatchTypeInfoCount()
{
    return HasTypeLibrary() ? 1 : 0;
}

HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info)
{
    if (info)
        *info = nullptr;
    if (index != 0)
        return DISP_E_BADINDEX;
    return info ? LoadTypeInfo(iid, info) : E_POINTER;
}
