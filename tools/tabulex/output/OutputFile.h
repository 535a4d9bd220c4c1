// OutputFile: standard output, or a file that appears under its name only when it is
// committed.
//
// A regular file is staged and published by Commit; devices and pipes are written
// directly. Without a Commit nothing is left behind. The first fault is kept, and everything after
// it is refused. Not synchronised, but may be handed from thread to thread.
#pragma once

#include <cstdio>
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
    // Text may stay in a buffer until Flush or Commit, so a fault may show only then.
    bool Write(std::string_view text);
    bool Flush();
    // Makes what was written final. False if that fails; nothing is left then.
    bool Commit();
    // Removes what was written, unless it was written directly. Safe after Commit.
    void Discard();

    // True for a file that nobody sees before Commit.
    bool HidesUntilCommit() const { return !m_staged.Name().empty(); }
    // The reader of the pipe is gone, which is no fault to be reported.
    bool IsReaderGone() const;
    // The system's text for the first fault; empty if there is none.
    std::string FaultText() const;

private:
    bool Fail(int nError);
    bool Close();

    std::FILE* m_file = nullptr;
    bool m_bStandard = false; // m_file is stdout, which isn't ours to close
    int m_nError = 0;         // errno of the first fault
    StagedFile m_staged;      // none for what is written directly
};

} // namespace tabulex
