// What the commands that convert have in common.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// A folder for outputs, which is removed if it is still empty at the end.
class OutputFolder
{
public:
    // Where it can't be made, the outputs fail and give the reason.
    explicit OutputFolder(const std::string& path);
    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

private:
    std::filesystem::path m_path;
    bool m_bMade;
};

// What is done with bad lines where the command says nothing: a question must be seen by
// somebody who can answer it.
OnBadLine ActionOn(const ConvertOptions& options);

// Throws Fault where an output would replace one of the files that are read.
void RequireDistinctFiles(const ConvertOptions& options, const std::vector<std::string>& files,
                          const OutputOptions& output);

// The last line about a file.
std::string Summary(const Outcome& outcome);

} // namespace tabulex
