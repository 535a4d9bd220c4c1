#include "tests/front/Minutes.h"
#include "tests/transcripts/Scenarios.h"

using namespace IQRL_TabulexConverter;

namespace transcripts {

namespace {

// Three batches, the last one half full.
constexpr int kManyRecords = 2500;

// An answer to one batch; the others get S_OK.
void AnswerTo(Host& host, std::size_t nBatch, HRESULT hr)
{
    host.onData = [=](std::size_t n) { return n == nBatch ? hr : S_OK; };
}

void SeveralBatches(Host& host)
{
    host.OpenText(Minutes(kManyRecords));
    host.Convert();
}

void SinkHasEnough(Host& host)
{
    AnswerTo(host, 2, S_FALSE);
    SeveralBatches(host);
}

void SinkFails(Host& host)
{
    AnswerTo(host, 2, E_FAIL);
    SeveralBatches(host);
}

void UnadviseDuringABatch(Host& host)
{
    host.onData = [&host](std::size_t nBatch) { return nBatch == 2 ? host.Unadvise() : S_OK; };
    SeveralBatches(host);
    host.Unadvise();
}

void UnadviseOfAnEnumeration(Host& host)
{
    host.Open("symbols.csv");
    host.onData = [&host](std::size_t nSymbol) { return nSymbol == 2 ? host.Unadvise() : S_OK; };
    host.EnumSymbols();
}

void BadLinesSkipped(Host& host)
{
    host.Open("junk.csv");
    host.presses = {ProgressSkip, ProgressSkipAll};
    host.Convert();
}

void BadLineStopsIt(Host& host)
{
    host.Open("junk.csv");
    host.presses = {ProgressSkip, ProgressCancel};
    host.Convert();
}

void BadLinesWithoutAView(Host& host)
{
    host.bHasViews = false;
    host.Open("junk.csv");
    host.Convert();
}

void Portions(Host& host)
{
    host.Open("junk.csv");
    for (const auto& [nStart, nCount] : {std::pair(10, 5), {100, 10}, {130, 10}, {5, 0}, {500, 1}})
        host.ConvertPortion(static_cast<ULONGLONG>(nStart), static_cast<ULONGLONG>(nCount));
}

void PortionsOfADescendingFile(Host& host)
{
    host.Open("descending.csv");
    host.ConvertPortion(0, 3);
    host.ConvertPortion(20, 10);
}

void PortionOfSeveralBatches(Host& host)
{
    host.OpenText(Minutes(kManyRecords));
    host.ConvertPortion(700, 1500);
}

void OneFileThroughClones(Host& host)
{
    host.Open("week.csv");
    host.Convert();
    host.SwitchToClone();
    host.Tell("multiply", host.Converter().put_PriceMultiplier(0x43));
    host.Convert();
    host.SwitchToClone();
    host.DescribeLayout();
    host.Convert();
}

void ConverterThatIsLetGoOf(Host& host)
{
    host.onData = [&host](std::size_t nBatch) {
        if (nBatch == 1)
            host.LetGo();
        return S_OK;
    };
    SeveralBatches(host);
}

void FileThatIsLetGoOf(Host& host)
{
    host.Open("week.csv");
    host.Convert();
    host.Tell("ReleaseFile", host.Converter().ReleaseFile());
    host.Convert();
    host.Open("week.csv");
    host.Convert();
}

void NoFile(Host& host)
{
    host.DescribeLayout();
    host.Convert();
    host.ConvertPortion(0, 10);
    host.EnumSymbols();
    host.CheckSettings();
    host.SwitchToClone();
}

void MissingFile(Host& host)
{
    host.Open("no-such-file.csv");
    host.DescribeLayout();
    host.Convert();
    host.ConvertPortion(0, 10);
    host.EnumSymbols();
}

void EmptyFile(Host& host)
{
    host.OpenText("");
    host.DescribeLayout();
    host.Convert();
    host.ConvertPortion(0, 10);
    host.EnumSymbols();
}

void FileWithoutQuotes(Host& host)
{
    host.OpenText("There is nothing\nto be had here\n");
    host.DescribeLayout();
    host.Convert();
}

constexpr Scenario kSessionScenarios[] = {
    {"several batches", SeveralBatches},
    {"the sink has enough", SinkHasEnough},
    {"the sink fails", SinkFails},
    {"Unadvise during a batch, and again behind the end", UnadviseDuringABatch},
    {"Unadvise of an enumeration", UnadviseOfAnEnumeration},
    {"bad lines: skip, skip all", BadLinesSkipped},
    {"bad lines: skip, cancel", BadLineStopsIt},
    {"bad lines without a view", BadLinesWithoutAView},
    {"portions: of good lines, with bad ones, over the end, of nothing, behind the end", Portions},
    {"portions of a descending file", PortionsOfADescendingFile},
    {"a portion of several batches", PortionOfSeveralBatches},
    {"one file through clones, one after the other", OneFileThroughClones},
    {"the converter is let go of meanwhile", ConverterThatIsLetGoOf},
    {"the file is let go of", FileThatIsLetGoOf},
    {"no file", NoFile},
    {"a missing file", MissingFile},
    {"an empty file", EmptyFile},
    {"a file without quotes", FileWithoutQuotes},
};

} // namespace

std::span<const Scenario> SessionScenarios()
{
    return kSessionScenarios;
}

} // namespace transcripts
