// RejectsFile: the bad lines of all conversions of a call, as CSV.
//
// They are kept after a rollback, when the user wants to look at them; those of an
// interrupted run alone don't make a file. Not synchronised, but may be handed from thread
// to thread.
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
    void Write(std::string_view rows);
    // After each run: hands what it brought to the system. The file is kept if `bKeep` is set
    // for any run. False: see FaultText.
    bool EndRun(bool bKeep);
    // After all runs: the file appears if it is to be kept. False as above.
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
