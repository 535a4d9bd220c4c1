// OpenedFile: a file with the component's objects that read it, and the program's choices.
//
// It is a host like any other: it creates the converter, offers every resolution, opens the
// file and corrects what was found. Each opened file gives the component a name of its own for
// the file, since one worker serves all parsers of a name: files that are read at the same time,
// and by a program that waits, must not wait for each other.
//
// For one thread at a time. Throws ReadFailure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "facade/tabulex/entries.hpp"
#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/com_ptr.h"

namespace Hesperon::reader {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IqrlTabulexConvertor;
using IQRL_TabulexConverter::IRecordParser;

struct FileColumn
{
    LONG nType; // -1 for a column that isn't read
    std::string sTemplate;
    std::string sHeading; // empty without a header
};

// What is done to rows on their way; all of it is copied from the choices.
struct RowRules
{
    std::optional<LONGLONG> nFrom, nTo; // milliseconds since 1970, both included
    string_t sSymbol;                   // empty for all
    int nPricePower = 0;                // of ten
    int nVolumePower = 0;
};

class OpenedFile
{
public:
    // The path as the system's bytes.
    OpenedFile(std::string_view path, const tabulex::detail::Choices& choices);

    IDataParser& Data() const { return *m_data.get(); }
    const RowRules& Rules() const { return m_rules; }
    const std::vector<FileColumn>& Columns() const { return m_columns; }
    // The types of the columns that are read.
    std::vector<LONG> ReadTypes() const;

    // Without the columns' count, its texts good for as long as this object.
    tabulex::detail::LayoutRow Layout() const;
    // Why no rows can be read; empty if they can.
    const std::string& Fault() const { return m_sFault; }

    // A parser on the same open file that delivers all of its records, whatever their dates.
    com_ptr<IDataParser> RowReader() const;

    // Throws where something of the file couldn't be read, or was added to it since.
    void RequireWhole() const;

    // One reading of rows at a time.
    bool m_bBusy = false;

private:
    void Create();
    void Open(std::string_view path);
    void Apply(const tabulex::detail::Choices& choices);
    void ApplyLayout(const tabulex::detail::Choices& choices);
    void SkipLines(ULONG nLines, bool bFindDividers);
    void ApplyResolution(const tabulex::detail::Choices& choices);
    void ReadColumns();
    void ReadLayout();
    std::string FindFault() const;
    std::string HeaderLine() const;

    com_ptr<IqrlTabulexConvertor> m_front;
    com_ptr<IDataParser> m_data;
    com_ptr<IRecordParser> m_records;
    RowRules m_rules;
    tabulex::detail::LayoutRow m_layout{};
    std::string m_sHeader;
    std::string m_sFault;
    std::vector<FileColumn> m_columns;
};

// ---- parts of it, in files of their own

// The name by which the component is given the file: no other one that it has been given.
string_t OwnNameOf(std::string_view path);

// Applies each choice in turn.
void ApplyColumns(IDataParser& data, IRecordParser& records,
                  const tabulex::detail::Choices& choices);

// Power of ten of a multiplier's code; throws for an unknown one.
int PowerOf(std::int32_t nCode);

// Days since 1899-12-30 as milliseconds since 1970, to the nearest.
LONGLONG MillisecondsOf(DATE date);

} // namespace Hesperon::reader
