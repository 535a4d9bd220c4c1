// A host does what the component expects of one: it offers its resolutions ahead of the first file,
// as these limit what detection may find. The names of types are taken before as well, while no
// resolution limits their list. The component only says that a file wasn't opened, so the reason is
// sought afterwards by opening it once more.

#include "tools/tabulex/host/Host.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fmt/format.h>

#include "interfaces/ClassIds.h"
#include "interfaces/Module.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/Suggestion.h"

namespace tabulex {

using IQRL_TabulexConverter::CLSID_CqrlTabulexConvertor;

namespace {

// After the last record of any file, and far enough from the end of the number range that
// adding the header's lines doesn't wrap.
constexpr ULONGLONG kAfterEveryFile = ULONGLONG(1) << 62;

void Require(HRESULT hr, const char* pszWhat)
{
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("{} failed: {}", pszWhat, HexOf(hr))};
}

// The component only reports that it failed, so the system is asked for the reason.
std::string WhyNotOpened(const std::string& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(PathOf(path), error))
        return "is a folder";
    errno = 0;
    if (std::FILE* file = OpenFile(path, FileMode::Read)) {
        std::fclose(file); // it can by now, or it is of a kind that the component refuses
        return "can't be opened; give the name of a regular file";
    }
    return std::strerror(errno);
}

} // namespace

HRESULT CreateComponent(REFCLSID clsid, REFIID riid, void** ppv)
{
    com_ptr<IClassFactory> factory;
    const HRESULT hr = DllGetClassObject(clsid, iid_of<IClassFactory>, factory.put_void());
    return FAILED(hr) ? hr : factory->CreateInstance(nullptr, riid, ppv);
}

Host::Host(const ResolutionOffers& offers) : m_offers(offers)
{
    Require(CreateComponent(CLSID_CqrlTabulexConvertor, m_front), "creating the converter");
    com_ptr<IDispatch> data, records;
    Require(m_front->get_DataParser(data.put()), "getting the data parser");
    m_data = data.as<IDataParser>();
    Require(m_data ? m_data->get_RecordParser(records.put()) : E_NOINTERFACE,
            "getting the record parser");
    m_records = records.as<IRecordParser>();
    Require(m_records ? S_OK : E_NOINTERFACE, "getting the record parser");
    for (const ResolutionOffer& resolution : m_offers.Offered())
        Require(m_front->AddResolutionTemplate(resolution.nHostId,
                                               Bstr(FromUtf8(resolution.sName)).get()),
                "offering the resolutions");
    // While no file is open no resolution limits the list, so it holds all types.
    Variant names;
    Require(m_records->GetTypeNames(names.put()), "getting the field types");
    m_typeNames = TextsOf(names);
    if (!m_typeNames.empty())
        m_typeNames.erase(m_typeNames.begin()); // the name of an unassigned column
}

void Host::Open(const std::string& path)
{
    const Bstr name(PathFromBytes(path));
    const HRESULT hr = m_front->put_FileName(name.get());
    if (hr == S_FALSE)
        throw Fault{ExitStatus::FileFault, WhyNotOpened(path)};
    if (FAILED(hr))
        throw Fault{ExitStatus::FileFault, fmt::format("can't be read: {}", HexOf(hr))};
    RequireRead(*this);
}

std::string Host::Path() const
{
    return BytesFromPath(GetText(Front(), &IqrlTabulexConvertor::get_FileName));
}

unsigned Host::TypeOf(std::string_view name) const
{
    const auto at = std::ranges::find_if(
        m_typeNames, [&](const std::string& type) { return EqualIgnoringCase(type, name); });
    return at == m_typeNames.end() ? kNoType : static_cast<unsigned>(at - m_typeNames.begin());
}

unsigned Host::RequireType(std::string_view name, std::string_view option) const
{
    const unsigned uiType = TypeOf(name);
    if (uiType != kNoType)
        return uiType;
    throw Fault{ExitStatus::Usage, fmt::format("{}: there is no field type '{}'; {}", option, name,
                                               SuggestOrList(name, m_typeNames))};
}

unsigned Host::ColumnType(ULONG nField) const
{
    LONG nType = 0;
    return SUCCEEDED(m_records->GetFieldType(nField, &nType)) ? static_cast<unsigned>(nType)
                                                              : kNoType;
}

std::string Host::ColumnName(ULONG nField) const
{
    const unsigned uiType = ColumnType(nField);
    return uiType < m_typeNames.size() ? m_typeNames[uiType] : std::string();
}

bool Host::HasColumn(unsigned uiType) const
{
    ULONG nField = 0;
    return m_records->GetFieldIndex(static_cast<LONG>(uiType), &nField) == S_OK;
}

// Seeking beyond the end fails, but counts the whole file and leaves the position as it
// was.
ULONGLONG Host::CountRecords() const
{
    m_data->put_Position(kAfterEveryFile);
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const HRESULT hr = m_data->GetCount(&nCount, &bComplete);
    if (FAILED(hr) || bComplete == VARIANT_FALSE)
        throw Fault{ExitStatus::FileFault, "the records can't be counted to the end of the file"};
    return nCount;
}

// A clone costs no detection, shares the open file, and has a lock of its own.
com_ptr<IDataParser> Host::LineReader() const
{
    com_ptr<IDispatch> copy;
    Require(m_data->Clone(copy.put()), "copying the data parser");
    com_ptr<IDataParser> reader = copy.as<IDataParser>();
    Require(reader ? S_OK : E_NOINTERFACE, "copying the data parser");
    reader->put_HasHeader(VARIANT_FALSE);
    reader->put_HeaderOffset(0);
    reader->put_InvertedDirection(VARIANT_FALSE);
    return reader;
}

} // namespace tabulex
