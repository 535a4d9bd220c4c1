// A record parser for records of a simple form: fields between commas, with types that the test
// sets. Dates and times are plain numbers of days; "?" is a field that doesn't parse.
#pragma once

#include <cstdlib>
#include <functional>
#include <vector>

#include "interfaces/IRecordParser.h"
#include "platform/values.h"
#include "src/data/UnofferedRecordParser.h"
#include "src/parsing/DataTypes.h"
#include "tests/data/Text.h"

class FakeRecordParser : public Hesperon::specifics::UnofferedRecordParser<FakeRecordParser>
{
public:
    // ---- what a test sets and reads

    std::vector<unsigned> types = {Hesperon::specifics::TypeDate, Hesperon::specifics::TypeClose};
    LONG nResolution = 6;
    LONG nResolutionSize = 1;
    double fMinimalStep = 0; // days that a record must lie after the one before
    HRESULT hrParse = S_OK;
    HRESULT hrFieldCount = S_OK;
    HRESULT hrFieldName = S_OK;
    HRESULT hrFieldText = S_OK;
    HRESULT hrPutDataParser = S_OK;
    HRESULT hrClone = S_OK;
    HRESULT hrValid = S_OK;
    HRESULT hrDuplicated = S_OK;
    std::function<HRESULT(VARIANT*)> lackedFields;
    string_t sDuplicated;
    // If set, called instead of the check of order.
    std::function<HRESULT(DATE last, BSTR* error)> checkResolution;
    std::function<void()> onParse;
    int nResets = 0;
    int nFieldTexts = 0;
    std::vector<string_t> parsed;
    std::vector<string_t> studied; // records given to FindResolution
    IDispatch* pDataParser = nullptr;

    // ---- IRecordParser

    HRESULT STDMETHODCALLTYPE Parse(BSTR bsRecord) override
    {
        m_fields = Split(TextOf(bsRecord));
        parsed.emplace_back(TextOf(bsRecord));
        if (onParse)
            onParse();
        return hrParse;
    }

    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override
    {
        if (FAILED(hrClone))
            return hrClone;
        com_ptr<FakeRecordParser> clone;
        CreateObject(clone);
        clone->types = types;
        clone->nResolution = nResolution;
        clone->nResolutionSize = nResolutionSize;
        clone->fMinimalStep = fMinimalStep;
        clone->pDataParser = pDataParser;
        *newObj = clone.detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Reset() override
    {
        ++nResets;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FindResolution(BSTR bsRecord) override
    {
        studied.emplace_back(TextOf(bsRecord));
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE CheckResolution(VARIANT LastDateTime, BSTR* error,
                                              IDispatch* pHost) override
    {
        if (!pHost)
            return E_NOINTERFACE;
        if (checkResolution)
            return checkResolution(LastDateTime.date, error);
        Variant now;
        if (const HRESULT hr = get_CurrentDateTime(now.put()); FAILED(hr))
            return hr;
        if (now.date - LastDateTime.date >= fMinimalStep)
            return S_OK;
        *error = NewBstr(OLESTR("order"));
        return S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE IsValidResolution() override { return hrValid; }

    HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT* names) override
    {
        SafeArray array(SafeArrayCreateVector(VT_BSTR, 0, 1));
        *names = Variant::FromArray(array.detach(), VT_BSTR).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetFieldValue(VARIANT* value, ULONG nField) override
    {
        if (nField >= types.size())
            return E_FAIL;
        const string_t sText = FieldText(nField);
        if (types[nField] == Hesperon::specifics::TypeSymbol) {
            *value = Variant::FromText(sText).detach();
            return S_OK;
        }
        if (const auto fNumber = Number(sText)) {
            const bool bDate = types[nField] <= Hesperon::specifics::TypeTime;
            *value = Variant::FromDate(*fNumber).detach();
            value->vt = bDate ? VT_DATE : VT_R8;
            return S_OK;
        }
        *value = Variant::FromText(sText).detach();
        return S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetFieldError(BSTR* bsError, ULONG nField) override
    {
        const bool bGood = Number(FieldText(nField)).has_value();
        *bsError = NewBstr(bGood ? OLESTR("fine") : OLESTR("bad ") + FieldText(nField));
        return bGood ? S_FALSE : S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField) override
    {
        ++nFieldTexts;
        if (FAILED(hrFieldText))
            return hrFieldText;
        const auto fields = Split(TextOf(bsRecord));
        *bsField = NewBstr(nField < fields.size() ? fields[nField] : string_t());
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetFieldIndex(LONG nType, ULONG* pIndex) override
    {
        for (ULONG i = 0; i < types.size(); ++i)
            if (types[i] == static_cast<unsigned>(nType)) {
                *pIndex = i;
                return S_OK;
            }
        *pIndex = 0xFFFFFFFF;
        return S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetFieldName(BSTR* bsName, ULONG nIndex) override
    {
        if (FAILED(hrFieldName))
            return hrFieldName;
        *bsName = NewBstr(Hesperon::specifics::TypeName(types.at(nIndex)));
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) override
    {
        *pVal = static_cast<ULONG>(types.size());
        return hrFieldCount;
    }

    HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT* pVal) override
    {
        double fSum = 0;
        bool bDate = false;
        for (std::size_t i = 0; i < types.size(); ++i) {
            if (types[i] != Hesperon::specifics::TypeDate &&
                types[i] != Hesperon::specifics::TypeTime)
                continue;
            const auto fNumber = Number(FieldText(i));
            if (!fNumber)
                return E_FAIL;
            fSum += *fNumber;
            bDate |= types[i] == Hesperon::specifics::TypeDate;
        }
        if (!bDate)
            return E_INVALIDARG;
        *pVal = Variant::FromDate(fSum).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_LackedFields(VARIANT* pVal) override
    {
        return lackedFields ? lackedFields(pVal) : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE get_DuplicatedField(BSTR* pVal) override
    {
        *pVal = FAILED(hrDuplicated) ? nullptr : NewBstr(sDuplicated);
        return hrDuplicated;
    }
    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override
    {
        *pVal = com_ptr<IDispatch>(pDataParser).detach();
        return pDataParser ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) override
    {
        if (FAILED(hrPutDataParser))
            return hrPutDataParser;
        pDataParser = newVal;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Resolution(LONG* pVal) override
    {
        *pVal = nResolution;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ResolutionSize(LONG* pVal) override
    {
        *pVal = nResolutionSize;
        return S_OK;
    }

    // ---- not needed by a data parser

    HRESULT STDMETHODCALLTYPE GetFieldType(ULONG nField, LONG* nType) override
    {
        *nType = static_cast<LONG>(types.at(nField));
        return S_OK;
    }

private:
    string_t FieldText(std::size_t i) const
    {
        return i < m_fields.size() ? m_fields[i] : string_t();
    }

    std::vector<string_t> m_fields;
};
