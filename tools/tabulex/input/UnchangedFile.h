// A file that is copied must stay the same meanwhile.
#pragma once

#include <functional>
#include <string>

namespace tabulex {

// Runs what copies a file. Throws Fault where the file changed meanwhile.
void CopyUnchanged(const std::string& path, const std::function<void()>& work);

} // namespace tabulex
