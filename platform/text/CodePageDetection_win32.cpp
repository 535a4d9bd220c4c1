// The service fills entries in no published order: they are sorted by confidence here.

#include "platform/text/CodePageDetection_win32.h"

#include <algorithm>

namespace {

DetectedCodePage PageOfEntry(const DetectEncodingInfo& entry)
{
    return {entry.nCodePage, std::clamp<int>(entry.nConfidence, 0, 100)};
}

} // namespace

// A failed call may leave anything in the entries, so they are ignored then.
std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost,
                                              const DetectInputCodepage& detect)
{
    if (bytes.empty() || nMost == 0)
        return {};
    std::string sample(bytes);
    std::vector<DetectEncodingInfo> entries(nMost);
    auto nBytes = static_cast<INT>(sample.size());
    auto nEntries = static_cast<INT>(nMost);
    if (detect(sample.data(), nBytes, entries.data(), nEntries) != S_OK)
        return {};
    entries.resize(static_cast<std::size_t>(std::clamp<INT>(nEntries, 0, static_cast<INT>(nMost))));
    std::vector<DetectedCodePage> pages(entries.size());
    std::ranges::transform(entries, pages.begin(), PageOfEntry);
    std::ranges::stable_sort(pages, std::greater<>(), &DetectedCodePage::nConfidence);
    return pages;
}
