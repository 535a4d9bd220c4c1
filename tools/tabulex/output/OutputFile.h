// OutputFile: standard output, or a file that appears under its name only when it is
// committed.
//
// A regular file is staged and published by Commit; devices, pipes and the program's own streams,
// also by names such as /dev/stdout, are written directly. Without a Commit nothing is left behind.
// The first fault is kept, and everything after it is refused. Not synchronised, but may be handed
// from thread to thread.
#pragma once

#include <string>
#include <string_view>

#include "tools/tabulex/output/StagedFile.h"

namespace tabulex {

class OutputFile
{
public:
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // "-" is standard output. False if it can't be written: see FaultText().
    bool Open(const std::string& path);
    // Small pieces are gathered until Flush or Commit, so a fault may show only then.
    bool Write(std::string_view text);
    bool Flush();
    // Makes what was written final. False if that fails; nothing is left then.
    bool Commit();
    // Removes what was written, unless it was written directly. Safe after Commit.
    void Discard();

    // True for a file that nobody sees before Commit.
    bool HidesUntilCommit() const { return !m_staged.Name().empty(); }
    // What is written is shown to somebody as it is.
    bool IsOnTerminal() const { return m_bTerminal; }
    // The reader of the pipe is gone, which is no fault to be reported.
    bool IsReaderGone() const;
    // Why it can't be written, in the system's words; empty if there is no fault.
    const std::string& FaultText() const { return m_sFault; }

private:
    bool OpenPlace(const std::string& path);
    bool Fail(int nError);
    bool Close();

    int m_nFile = -1;
    bool m_bOwned = false; // m_nFile is to be closed here
    bool m_bTerminal = false;
    std::string m_pending; // not written yet
    int m_nError = 0;      // errno of the first fault
    std::string m_sFault;  // its text
    StagedFile m_staged;   // none for what is written directly
};

} // namespace tabulex
