// Host: the component's object with its parsers, set up as hosts set it up, and the lists
// that a host keeps beside it.
//
// The calls throw Fault where the work can't go on. Used by one thread; the parsers
// themselves may be used from any.
#pragma once

#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/com_ptr.h"
#include "tools/tabulex/host/LineSource.h"
#include "tools/tabulex/host/ResolutionOffers.h"

namespace tabulex {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IqrlTabulexConvertor;
using IQRL_TabulexConverter::IRecordParser;

// Field types, by the component's ids; the interfaces carry them as LONG.
using IQRL_TabulexConverter::kNoType; // an unassigned column
using IQRL_TabulexConverter::TypeDate;
using IQRL_TabulexConverter::TypeSymbol;
using IQRL_TabulexConverter::TypeTime;

// An object of one of the component's classes.
template <class Interface>
HRESULT CreateComponent(REFCLSID clsid, com_ptr<Interface>& result);

class Host
{
public:
    // The offers must outlive the host. No file is open yet, so that settings on which the
    // detection depends can be made before Open.
    explicit Host(const ResolutionOffers& offers);

    // Throws Fault with the reason where the file can't be opened, or not be read for its
    // layout.
    void Open(const std::string& path);

    // The open file's path in the system's bytes.
    std::string Path() const;

    // The user's lines, where the component has a file in their place; else null. Outlives the
    // host.
    void SetSource(LineSource* pSource) { m_pSource = pSource; }
    LineSource* Source() const { return m_pSource; }

    // Never null; all live as long as the host.
    IqrlTabulexConvertor& Front() const { return *m_front.get(); }
    IDataParser& Data() const { return *m_data.get(); }
    IRecordParser& Records() const { return *m_records.get(); }
    const ResolutionOffers& Offers() const { return m_offers; }

    // Internal names of all field types; the index is the type id.
    const std::vector<std::string>& TypeNames() const { return m_typeNames; }
    // Id of a name, whatever its case; kNoType if there is none.
    unsigned TypeOf(std::string_view name) const;
    // The same, but throws Fault for an unknown one. `option` is what the user gave it to.
    unsigned RequireType(std::string_view name, std::string_view option) const;

    // Columns count from 0 in file order. kNoType for an unassigned one, and for one
    // that the file doesn't have.
    unsigned ColumnType(ULONG nField) const;
    // Empty for an unassigned column.
    std::string ColumnName(ULONG nField) const;
    // Whether any column has this type.
    bool HasColumn(unsigned uiType) const;

    // The number of data records, without the header and the lines before it. Walks to the
    // end of the file, which takes time on a large one; throws Fault if that fails.
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
    LineSource* m_pSource = nullptr;
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
