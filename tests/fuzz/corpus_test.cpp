// The inputs that are kept for the fuzzers, given to what the fuzzers do. A fault that a
// fuzzer found stays in the corpus, under a name that says what it is.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/Targets.h"

namespace {

using Target = void(const std::uint8_t* data, std::size_t nSize);

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder)
{
    const std::filesystem::directory_iterator entries(folder);
    std::vector<std::filesystem::path> paths(begin(entries), end(entries));
    std::sort(paths.begin(), paths.end());
    return paths;
}

// A fault ends the program, so each name is printed ahead.
void Replay(Target* target, const std::filesystem::path& folder)
{
    const auto paths = FilesIn(folder);
    ASSERT_FALSE(paths.empty()) << folder;
    for (const auto& path : paths) {
        std::cout << path.filename().string() << std::endl;
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        target(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
}

const std::filesystem::path kCorpus = FUZZ_CORPUS;

TEST(FuzzCorpus, QuoteFilesAreAdvisedOn)
{
    Replay(fuzz::AdviseFile, kCorpus / "AdviseFile");
    Replay(fuzz::AdviseFile, kCorpus / "ConvertFile");
    Replay(fuzz::AdviseFile, SAMPLES);
}

TEST(FuzzCorpus, LinesKeepTheirPlaces)
{
    Replay(fuzz::CleanLines, kCorpus / "CleanLines");
}

TEST(FuzzCorpus, QuoteFilesAreConverted)
{
    Replay(fuzz::ConvertFile, kCorpus / "ConvertFile");
}

TEST(FuzzCorpus, SamplesAreConverted)
{
    Replay(fuzz::ConvertFile, SAMPLES);
}

TEST(FuzzCorpus, TemplatesMatchAsPlainOnesDo)
{
    Replay(fuzz::MatchTemplate, kCorpus / "MatchTemplate");
}

TEST(FuzzCorpus, DocumentsComeBack)
{
    Replay(fuzz::ReadDocument, kCorpus / "ReadDocument");
}

} // namespace
