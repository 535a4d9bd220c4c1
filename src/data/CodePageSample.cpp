// The file gives its lines as text, decoded in the ANSI code page whatever page is asked for. They
// are encoded in Windows-1252, in which every byte is a character, to have bytes for the system's
// detection. So these are the bytes of the lines if the ANSI code page is 1252 too; in another one,
// characters that 1252 lacks have become '?'.

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
