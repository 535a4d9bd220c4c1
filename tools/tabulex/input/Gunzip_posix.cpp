// Members are unpacked for as long as the next two bytes begin one, as gzip itself does. Each has
// to reach its own end, where its sum and length are checked; a file that ends before is damaged.
// Bytes behind the last member are counted and told, unless all are zeros, which only fill a block
// up.

#include "tools/tabulex/input/Gunzip_posix.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <zlib.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/InputStream.h"

namespace tabulex {

namespace {

constexpr std::size_t kGzipPiece = std::size_t(1) << 18;
constexpr int kGzipFormat = 16 + MAX_WBITS;

[[noreturn]] void ThrowDamaged(std::string_view cause)
{
    throw Fault{ExitStatus::FileFault,
                fmt::format("the gzip file is damaged or cut ({}); fetch it anew", cause)};
}

// The members of a gzip file, one after the other.
class GzipReader
{
public:
    GzipReader(const std::string& path, SpillFile& to);
    ~GzipReader() { inflateEnd(&m_state); }
    GzipReader(const GzipReader&) = delete;
    GzipReader& operator=(const GzipReader&) = delete;

    Unpacked Run();

private:
    bool Fill();
    bool BeginsMember();
    void TakeMember();
    std::size_t CountRest();

    InputStream m_from;
    SpillFile& m_to;
    z_stream m_state{};
    std::vector<char> m_in;
    std::vector<char> m_out;
};

GzipReader::GzipReader(const std::string& path, SpillFile& to)
    : m_from(path), m_to(to), m_in(kGzipPiece), m_out(kGzipPiece)
{
    if (inflateInit2(&m_state, kGzipFormat) != Z_OK)
        throw Fault{ExitStatus::FileFault, kOutOfMemory};
}

Unpacked GzipReader::Run()
{
    do {
        TakeMember();
        inflateReset(&m_state);
    } while (BeginsMember());
    return {CountRest()};
}

// Keeps what hasn't been taken yet. False at the end of the file.
bool GzipReader::Fill()
{
    const std::size_t nKept = m_state.avail_in;
    std::copy_n(reinterpret_cast<const char*>(m_state.next_in), nKept, m_in.begin());
    const std::size_t nRead = m_from.Read(std::span(m_in).subspan(nKept));
    m_state.next_in = reinterpret_cast<Bytef*>(m_in.data());
    m_state.avail_in = static_cast<uInt>(nKept + nRead);
    return nRead > 0;
}

bool GzipReader::BeginsMember()
{
    if (m_state.avail_in < 2)
        Fill();
    return m_state.avail_in >= 2 && m_state.next_in[0] == 0x1F && m_state.next_in[1] == 0x8B;
}

void GzipReader::TakeMember()
{
    for (int nResult = Z_OK; nResult != Z_STREAM_END;) {
        if (m_state.avail_in == 0 && !Fill())
            ThrowDamaged("it ends too early");
        m_state.next_out = reinterpret_cast<Bytef*>(m_out.data());
        m_state.avail_out = static_cast<uInt>(m_out.size());
        nResult = inflate(&m_state, Z_NO_FLUSH);
        if (nResult == Z_MEM_ERROR)
            throw Fault{ExitStatus::FileFault, kOutOfMemory};
        if (nResult != Z_OK && nResult != Z_STREAM_END)
            ThrowDamaged(m_state.msg ? m_state.msg : "it isn't packed as gzip does it");
        m_to.WriteUnlessInterrupted({m_out.data(), m_out.size() - m_state.avail_out});
    }
}

// Zeros fill up a tape or a disk's block, and are no loss.
std::size_t GzipReader::CountRest()
{
    std::size_t nRest = 0;
    bool bZeros = true;
    do {
        nRest += m_state.avail_in;
        bZeros = bZeros && std::all_of(m_state.next_in, m_state.next_in + m_state.avail_in,
                                       [](Bytef c) { return c == 0; });
        m_state.avail_in = 0;
    } while (Fill());
    return bZeros ? 0 : nRest;
}

} // namespace

Unpacked Gunzip(const std::string& path, SpillFile& to)
{
    return GzipReader(path, to).Run();
}

} // namespace tabulex
