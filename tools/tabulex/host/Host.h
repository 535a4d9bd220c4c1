// Host: the component's object with its parsers, set up as a host does, and the lists
// that the host keeps beside it.
//
// The calls throw Fault where the work can't go on. Used by one thread; the parsers
// themselves may be used from any.
#pragma once

#include <string>
#include <vector>

#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/com_ptr.h"
#include "tools/tabulex/host/ResolutionOffers.h"

namespace tabulex {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IqrlTabulexConvertor;
using IQRL_TabulexConverter::IRecordParser;

// Field types that the tool treats in a way of its own, by the component's ids.
inline constexpr LONG kNoType = -1; // an unassigned column
inline constexpr LONG kSymbolType = 0;
inline constexpr LONG kDateType = 1;
inline constexpr LONG kTimeType = 2;
inline constexpr LONG kFirstPriceType = 3; // the types behind the last one are whole numbers
inline constexpr LONG kLastPriceType = 7;

// An object of one of the component's classes.
template <class Interface>
HRESULT CreateComponent(REFCLSID clsid, com_ptr<Interface>& result);

class Host
{
public:
    // The offers must outlive the host. No file is open yet, so that settings which
    // shape the detection can be made before Open.
    explicit Host(const ResolutionOffers& offers);

    // Throws Fault with the reason where the file can't be opened.
    void Open(const std::string& path);

    // Never null; all live as long as the host.
    IqrlTabulexConvertor& Front() const { return *m_front.get(); }
    IDataParser& Data() const { return *m_data.get(); }
    IRecordParser& Records() const { return *m_records.get(); }
    const ResolutionOffers& Offers() const { return m_offers; }

    // Internal names of all field types; the index is the type id.
    const std::vector<std::string>& TypeNames() const { return m_typeNames; }
    // Id of a name, whatever its case; kNoType if there is none.
    LONG TypeOf(std::string_view name) const;
    // The same, but throws Fault for an unknown one. `option` is what the user gave it to.
    LONG RequireType(std::string_view name, std::string_view option) const;

    // Columns count from 0 in file order. kNoType for an unassigned one, and for one
    // that the file doesn't have.
    LONG ColumnType(ULONG nField) const;
    // Empty for an unassigned column.
    std::string ColumnName(ULONG nField) const;
    // Whether any column has this type.
    bool HasColumn(LONG nType) const;

    // Data records, without the header and what stands before it. Walks to the end of
    // the file, so it takes time on a large one; throws Fault if that fails.
    ULONGLONG CountRecords() const;

    // Another parser on the same open file, on which position n is line n: for reading
    // while this host's own parser is busy, or locked. Throws Fault.
    com_ptr<IDataParser> LineReader() const;

private:
    const ResolutionOffers& m_offers;
    com_ptr<IqrlTabulexConvertor> m_front;
    com_ptr<IDataParser> m_data;
    com_ptr<IRecordParser> m_records;
    std::vector<std::string> m_typeNames;
};

// ---- implementation of the template

// Null and the failure for a class that the component lacks.
HRESULT CreateComponent(REFCLSID clsid, REFIID riid, void** ppv);

template <class Interface>
HRESULT CreateComponent(REFCLSID clsid, com_ptr<Interface>& result)
{
    return CreateComponent(clsid, iid_of<Interface>, result.put_void());
}

} // namespace tabulex
