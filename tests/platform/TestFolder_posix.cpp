#include "TestFolder.h"

void WriteAt(const std::filesystem::path& path, std::uint64_t offset, std::string_view bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.seekp(static_cast<std::streamoff>(offset));
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
