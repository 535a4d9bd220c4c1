// How a file is made beside another one and put in its place, as far as systems differ in it.
#pragma once

#include <string>
#include <system_error>

namespace tabulex {

// Makes a new file that nobody but its user can open, and gives a descriptor to write it. What an
// earlier run has left under the name is taken away; what a run is still writing is not. -1 on a
// failure, with the reason in errno: EEXIST where the name is taken.
int CreateStaged(const std::string& name);

// Puts the file, written to the disk, in the place of the target: with the owner and the
// permissions of the file that is there, or with those of a new one. With `bReplace` false the
// target must not exist. `nFile` is -1 once it is closed, as after every success; after a failure
// the file is still under its own name.
std::error_code PublishStaged(int& nFile, const std::string& name, const std::string& target,
                              bool bReplace);

// Removes the file, which may be closed already; `nFile` is -1 then, and afterwards.
void RemoveStaged(int& nFile, const std::string& name);

} // namespace tabulex
