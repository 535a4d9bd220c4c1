// The lines of the sample are read in the code page that maps every byte to a character. So
// encoding them again gives the bytes of the file, and the system's detection sees these.

#include "src/data/CodePageSample.h"

#include "platform/values.h"
#include "src/parsing/templates/IQDParseImpl.h"

namespace Hesperon::specifics {

std::string SampleBytes(IFileHandler& file)
{
    constexpr ULONGLONG kLines = 50;
    std::string sample;
    for (ULONGLONG nLine = 0; nLine < kLines; ++nLine) {
        Bstr sRecord;
        if (FAILED(file.GetRecord(nLine, kLatinCodePage, sRecord.put())))
            break;
        sample += EncodeText(kLatinCodePage, sRecord.view().substr(0, kMaxText)) + "\r\n";
    }
    return sample;
}

ULONG ChooseCodePage(ULONG nSet, std::span<const DetectedCodePage> candidates)
{
    const DetectedCodePage* pBest = nullptr;
    for (const DetectedCodePage& candidate : candidates) {
        if (candidate.nCodePage == nSet)
            return nSet;
        if (!pBest || candidate.nConfidence >= pBest->nConfidence)
            pBest = &candidate;
    }
    return pBest ? pBest->nCodePage : nSet;
}

ULONG DetectCodePage(IFileHandler& file, ULONG nSet)
{
    constexpr std::size_t kCandidates = 15;
    const std::string sample = SampleBytes(file);
    return sample.empty() ? nSet : ChooseCodePage(nSet, DetectCodePages(sample, kCandidates));
}

} // namespace Hesperon::specifics
