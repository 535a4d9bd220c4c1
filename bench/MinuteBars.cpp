#include "bench/MinuteBars.h"

#include <filesystem>

#include "bench/versus/QuoteFiles.h"

namespace {

std::uint64_t g_nRows = 5'000'000;

class MinuteBarsFile
{
public:
    MinuteBarsFile()
        : m_sPath((std::filesystem::temp_directory_path() / "tabulex-minute-bars.csv").string())
    {
        bench::WriteQuoteFile("minutes", g_nRows, m_sPath);
    }
    ~MinuteBarsFile() { std::filesystem::remove(m_sPath); }

    const std::string& Path() const { return m_sPath; }

private:
    std::string m_sPath;
};

const MinuteBarsFile& File()
{
    static const MinuteBarsFile file;
    return file;
}

} // namespace

const std::string& MinuteBarsPath()
{
    return File().Path();
}

std::uint64_t MinuteBarsRows()
{
    return g_nRows;
}

std::uint64_t MinuteBarsBytes()
{
    return std::filesystem::file_size(MinuteBarsPath());
}

void SetMinuteBarsRows(std::uint64_t nRows)
{
    g_nRows = nRows;
}
