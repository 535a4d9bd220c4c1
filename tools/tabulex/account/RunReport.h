// RunReport: account, warnings and bad lines of each file as one JSON object in one line.
//
// Bad lines are written as they come, so that any number of them takes no memory. Used by one
// thread.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/account/Account.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

// A bad line for people and programs.
struct BadLineRecord
{
    ULONGLONG nLine = 0; // as the user wants lines numbered
    LONG nField = 0;     // from 1; 0 where no field is to blame
    std::string sColumn; // name of that field's type
    std::string sMessage;
    std::string sText; // the line's own bytes
};

class RunReport
{
public:
    // To a file that appears when all is done, "-" for standard output.
    explicit RunReport(std::string path);
    // To the console, a line at the end of each file.
    explicit RunReport(Console& console);
    RunReport(const RunReport&) = delete;
    RunReport& operator=(const RunReport&) = delete;

    // Throws Fault if it can't be written.
    void Begin(const std::string& file);
    void Add(const BadLineRecord& bad);
    // result: "commit", "rollback" or "refused"; sError: why the run failed, or empty.
    void End(const Account& account, const std::vector<Warning>& warnings, std::string_view result,
             int nStatus, std::string_view error);
    // After the last file. False: see FaultText.
    bool Finish();
    std::string FaultText() const;

private:
    void Write(std::string_view text);
    void Spool();

    std::string m_sPath;
    OutputFile m_file;
    bool m_bOpen = false;
    Console* m_pConsole = nullptr;
    std::optional<SpillFile> m_spool; // for the console, which is told of a file at its end
    std::string m_pending;            // not yet there
    std::string m_sFault;             // of it
    bool m_bFirst = true;
};

} // namespace tabulex
