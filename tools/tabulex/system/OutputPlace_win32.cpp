#include "tools/tabulex/system/OutputPlace.h"

#include <filesystem>

#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

constexpr int kMostLinks = 40;

// The names of devices, such as NUL, exist in every folder.
bool IsDevice(const std::string& path)
{
    std::error_code ignored;
    const fs::path place = fs::absolute(PathOf(path), ignored);
    return place.native().starts_with(L"\\\\.\\") || fs::is_directory(place, ignored);
}

} // namespace

OutputPlace FindPlace(const std::string& path)
{
    OutputPlace place;
    std::error_code error;
    fs::path target = PathOf(path);
    for (int i = 0; i < kMostLinks && fs::is_symlink(target, error); ++i)
        target = target.parent_path() / fs::read_symlink(target, error);
    place.sTarget = Utf8Of(target);
    place.bExists = fs::exists(target, error);
    if (IsDevice(place.sTarget))
        place.kind = PlaceKind::Device;
    return place;
}

std::string WhyNotReplaced(const std::string& file)
{
    std::error_code error;
    const fs::file_status status = fs::status(PathOf(file), error);
    const bool bWritable = (status.permissions() & fs::perms::owner_write) != fs::perms::none;
    return fs::exists(status) && !bWritable ? "the file is read-only" : "";
}

} // namespace tabulex
