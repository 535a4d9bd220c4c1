// The code page of a file, from its first lines.

#include "platform/CodePage.h"
#include "src/data/DataParser.h"
#include "src/parsing/templates/IQDParseImpl.h"

namespace Hesperon::specifics {

// Lines are read in the code page that maps every byte, so that encoding them
// again gives the bytes of the file.
std::string CDataParser::SampleBytes()
{
    constexpr ULONGLONG kLines = 50;
    std::string sample;
    for (ULONGLONG nLine = 0; nLine < kLines; ++nLine) {
        Bstr sRecord;
        if (FAILED(m_pFileHandler->GetRecord(nLine, kLatinCodePage, sRecord.put())))
            break;
        sample += EncodeText(kLatinCodePage, sRecord.view().substr(0, kMaxText)) + "\r\n";
    }
    return sample;
}

void CDataParser::DetectCodePage()
{
    constexpr std::size_t kCandidates = 15;
    const std::string sample = SampleBytes();
    if (sample.empty())
        return;
    DetectedCodePage best{m_nLocale, 0};
    for (const DetectedCodePage& candidate : DetectCodePages(sample, kCandidates)) {
        // The page that is set stays if it is among the candidates at all.
        if (candidate.nCodePage == m_nLocale)
            return;
        if (candidate.nConfidence >= best.nConfidence)
            best = candidate;
    }
    m_nLocale = best.nCodePage;
}

} // namespace Hesperon::specifics
