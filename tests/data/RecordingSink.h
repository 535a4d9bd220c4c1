// A sink that writes down what it hears. Safe to read once the run has ended, or
// under its lock.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "interfaces/IDataParserEvents.h"
#include "module/ComObject.h"
#include "platform/threads/Event.h"
#include "platform/values.h"
#include "tests/support/Text.h"

class RecordingSink
    : public ComObject<RecordingSink, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
public:
    struct Batch
    {
        ULONGLONG nLines;
        ULONG nColumns;
        std::vector<std::string> rows; // cells joined by '|'

        bool operator==(const Batch&) const = default;
    };
    struct BadLine
    {
        LONG_PTR nLine;
        LONG nField;
        std::string sText;

        bool operator==(const BadLine&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const BadLine& b)
        {
            return out << b.nLine << ':' << b.nField << ':' << b.sText;
        }
    };
    struct Fault
    {
        VARTYPE vt;
        std::vector<std::string> elements; // kind and text of each
    };

    std::function<HRESULT(std::size_t nBatch)> onPutRecords;
    std::function<HRESULT(const BadLine&)> onBadLine;
    std::function<void()> onEnd;
    HRESULT hrOnError = S_OK;
    HRESULT hrResolutionName = S_OK;
    string_t sResolutionName = OLESTR("Days");

    std::vector<Batch> batches;
    std::vector<BadLine> badLines;
    std::vector<Fault> faults;
    std::vector<bool> ends;
    Event ended{Event::Kind::ManualReset};

    std::vector<std::string> AllRows() const
    {
        std::vector<std::string> all;
        for (const Batch& batch : batches)
            all.insert(all.end(), batch.rows.begin(), batch.rows.end());
        return all;
    }

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nLines) override
    {
        std::size_t nBatch = 0;
        {
            std::lock_guard lock(m_lock);
            batches.push_back(Read(vRecords, nLines));
            nBatch = batches.size();
        }
        return onPutRecords ? onPutRecords(nBatch) : S_OK;
    }

    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override
    {
        {
            std::lock_guard lock(m_lock);
            ends.push_back(bResult != VARIANT_FALSE);
        }
        if (onEnd)
            onEnd();
        ended.Set();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE OnError(VARIANT description) override
    {
        Fault fault{description.vt, {}};
        for (LONG i = 0; i < 3; ++i) {
            Variant element;
            SafeArrayGetElement(description.parray, &i, element.put());
            fault.elements.push_back(CellText(element));
        }
        faults.push_back(fault);
        return hrOnError;
    }

    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR* name) override
    {
        if (SUCCEEDED(hrResolutionName))
            *name = NewBstr(sResolutionName);
        return hrResolutionName;
    }

    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR nLine, LONG nField, BSTR text) override
    {
        const BadLine line{nLine, nField, Utf8(TextOf(text))};
        {
            std::lock_guard lock(m_lock);
            badLines.push_back(line);
        }
        return onBadLine ? onBadLine(line) : S_OK;
    }

    std::size_t EndCount()
    {
        std::lock_guard lock(m_lock);
        return ends.size();
    }

    static std::string CellText(const VARIANT& cell)
    {
        Variant text;
        if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&cell), 0, VT_BSTR)) ||
            cell.vt == VT_DATE) {
            char buffer[40];
            std::snprintf(buffer, sizeof buffer, "%.10g", cell.date);
            return cell.vt == VT_DATE ? std::string(buffer) : "kind " + std::to_string(cell.vt);
        }
        return Utf8(TextOf(text.bstrVal));
    }

private:
    static Batch Read(const VARIANT& vRecords, ULONGLONG nLines)
    {
        Batch batch{nLines, 0, {}};
        if (vRecords.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(vRecords.parray) != 2)
            return batch;
        LONG nLastColumn = -1, nLastRow = -1, nLow = 0;
        SafeArrayGetUBound(vRecords.parray, 1, &nLastColumn);
        SafeArrayGetUBound(vRecords.parray, 2, &nLastRow);
        SafeArrayGetLBound(vRecords.parray, 2, &nLow);
        batch.nColumns = static_cast<ULONG>(nLastColumn + 1);
        for (LONG n = nLow; n <= nLastRow; ++n) {
            std::string row;
            for (LONG k = 0; k <= nLastColumn; ++k) {
                LONG indices[] = {k, n};
                Variant cell;
                SafeArrayGetElement(vRecords.parray, indices, cell.put());
                row += (k ? "|" : "") + CellText(cell);
            }
            batch.rows.push_back(row);
        }
        return batch;
    }

    std::mutex m_lock;
};
