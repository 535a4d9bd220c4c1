// What the tests of file access have in common.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/threads/Thread.h"
#include "platform/values.h"
#include "src/files/SharedFile.h"
#include "tests/support/ReportLog.h"
#include "tests/support/TempFile.h"
#include "tests/support/Text.h"
#include "tests/support/Waits.h"

namespace files_test {

// A file on disk that the library opens.
class TestFile : public TempFile
{
public:
    using TempFile::TempFile;

    std::shared_ptr<Hesperon::specifics::SharedFile> Open() const
    {
        int nError = 0;
        return std::make_shared<Hesperon::specifics::SharedFile>(File::Open(Name(), nError));
    }
};

inline std::string Narrow(string_view_t text)
{
    return std::string(text.begin(), text.end());
}

// "line 0\nline 1\n" ...; all lines differ.
inline std::string NumberedLines(std::size_t nLines, const std::string& sTail = "")
{
    std::string bytes;
    for (std::size_t n = 0; n < nLines; ++n)
        bytes += "line " + std::to_string(n) + sTail + "\n";
    return bytes;
}

} // namespace files_test
