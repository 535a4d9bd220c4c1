// The component's environment in files: the user's templates and folder as one text,
// UTF-8.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

// Adds what the file holds to the object's settings. Before a file is opened, so that
// templates take part in the detection. Throws Fault for a file that can't be read or
// is no such document.
void ReadEnvironment(Host& host, const std::string& path);

// The environment as it stands, UTF-8. Throws Fault.
std::string EnvironmentText(Host& host);

// Puts the environment in the place of the file's text. Throws Fault, and the file is as
// before.
void SaveEnvironment(Host& host, const std::string& path);

// The folder that the import dialog starts in. One that the object has from an environment is
// kept where `bKeep` is set.
void SetFolder(Host& host, const std::string& path, bool bKeep);

} // namespace tabulex
