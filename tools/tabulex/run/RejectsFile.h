// RejectsFile: the bad lines of all conversions of a call, as CSV.
//
// They are what a user looks at after a rollback, so they stay then; those of an
// interrupted run aren't worth a file. Not synchronised, but may be handed from
// thread to thread.
#pragma once

#include <string>
#include <string_view>

#include "tools/tabulex/output/OutputFile.h"

namespace tabulex {

class RejectsFile
{
public:
    explicit RejectsFile(std::string path) : m_sPath(std::move(path)) {}

    // Before each run; the first begins the file with its header row. Throws Fault if
    // it can't be written.
    void Open();
    void Write(std::string_view rows) { m_file.Write(rows); }
    // Behind each run: what it brought is with the system, and wanted if `bKeep` says
    // so. False: see FaultText.
    bool EndRun(bool bKeep);
    // Behind all of them: the file appears if any run's lines are wanted. False as above.
    bool Finish();

    // Empty if there is no fault.
    std::string FaultText() const;

private:
    std::string m_sPath;
    OutputFile m_file;
    bool m_bOpen = false;
    bool m_bKeep = false;
};

} // namespace tabulex
