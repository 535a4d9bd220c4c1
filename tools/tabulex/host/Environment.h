// The component's environment in files: the user's templates and folder as one text,
// UTF-8.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/OutputFile.h"

namespace tabulex {

// Adds what the file holds to the object's settings. Before a file is opened, so that
// templates take part in the detection. Throws Fault for a file that can't be read or
// is no such document.
void ReadEnvironment(Host& host, const std::string& path);

// The environment as it stands, UTF-8. Throws Fault.
std::string EnvironmentText(Host& host);

// A file that is to take the environment as it will be. Until Save, and after a failure, it is as
// before.
class EnvironmentFile
{
public:
    // Throws Fault if the file can't be written.
    explicit EnvironmentFile(std::string path);

    // Puts the environment in the place of the file's text. Once; throws Fault.
    void Save(Host& host);

private:
    void Require(bool bWritten) const;

    std::string m_sPath;
    OutputFile m_file;
};

// The folder that the import dialog starts in. One that the object has from an environment is
// kept where `bKeep` is set.
void SetFolder(Host& host, const std::string& path, bool bKeep);

} // namespace tabulex
