#include "tools/tabulex/system/OutputPlace.h"

#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

constexpr int kStandardOutput = 1;

int StreamOf(const std::string& path)
{
    return path == "-" ? kStandardOutput : FindPlace(path).nStream;
}

// Also where its folder is still to be made.
std::string CanonicalName(const std::string& path)
{
    const OutputPlace place = FindPlace(path);
    std::error_code error;
    const fs::path target = PathOf(place.sTarget.empty() ? path : place.sTarget);
    return Utf8Of(fs::weakly_canonical(fs::absolute(target, error), error));
}

} // namespace

OutputPlace FindWritablePlace(const std::string& path)
{
    OutputPlace place = FindPlace(path);
    if (place.kind == PlaceKind::File && place.bExists)
        place.sFault = WhyNotReplaced(place.sTarget);
    return place;
}

// Two streams may lead to one terminal, which isn't meant.
bool AreSamePlace(const std::string& a, const std::string& b)
{
    const int nA = StreamOf(a);
    const int nB = StreamOf(b);
    if (nA >= 0 && nB >= 0)
        return nA == nB;
    const auto isStreamsFile = [](int nStream, const std::string& path) {
        return nStream >= 0 && IsFileOfStream(nStream, path);
    };
    if (nA >= 0 || nB >= 0)
        return isStreamsFile(nA, b) || isStreamsFile(nB, a);
    std::error_code error;
    return fs::equivalent(PathOf(a), PathOf(b), error) ||
           AreSameName(CanonicalName(a), CanonicalName(b));
}

} // namespace tabulex
