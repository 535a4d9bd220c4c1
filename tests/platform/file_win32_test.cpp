#include "TestFolder.h"
#include "Values.h"

namespace {

constexpr DWORD kSharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A handle that another program might hold.
class OtherHandle
{
public:
    OtherHandle(const std::filesystem::path& path, DWORD nAccess, DWORD nShared)
        : m_handle(CreateFileW(path.c_str(), nAccess, nShared, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr))
    {}
    ~OtherHandle()
    {
        if (IsOpen())
            CloseHandle(m_handle);
    }
    OtherHandle(const OtherHandle&) = delete;
    OtherHandle& operator=(const OtherHandle&) = delete;

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

int ErrorOf(const string_t& path)
{
    int nError = -1;
    const File file = File::Open(path, nError);
    EXPECT_EQ(file.IsOpen(), nError == 0);
    return nError;
}

TEST_F(FileTest, GivesTheSystemsErrorForWhatItCannotOpen)
{
    const string_t name = NameOf(Write("a", ""));
    EXPECT_EQ(ErrorOf(NameOf(m_folder)), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOf(NameOf(m_folder / "missing")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ErrorOf(NameOf(m_folder / "missing" / "file")), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(ErrorOf(name + string_t(L"\0b", 2)), ERROR_INVALID_NAME);
    EXPECT_EQ(ErrorOf({}), ERROR_PATH_NOT_FOUND);
}

TEST_F(FileTest, RefusesWhatWouldKeepItsReaderWaiting)
{
    const wchar_t* name = L"\\\\.\\pipe\\tabulex-file-test";
    const HANDLE pipe =
        CreateNamedPipeW(name, PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    EXPECT_EQ(ErrorOf(name), ERROR_NOT_SUPPORTED);
    CloseHandle(pipe);
    EXPECT_EQ(ErrorOf(L"NUL"), ERROR_NOT_SUPPORTED);
}

TEST_F(FileTest, TakesSlashesOfEitherKind)
{
    const string_t name = NameOf(Write("quotes.txt", "abc"));
    for (const wchar_t slash : {L'/', L'\\'}) {
        string_t path = name;
        for (wchar_t& c : path)
            c = c == L'/' || c == L'\\' ? slash : c;
        EXPECT_EQ(ErrorOf(path), 0) << Narrow(path);
    }
}

TEST_F(FileTest, CannotBeOpenedWhileAnotherHoldsItAlone)
{
    const std::filesystem::path path = Write("quotes.txt", "abc");
    struct Row
    {
        DWORD nAccess;
        DWORD nShared;
        int nError;
    };
    const Row rows[] = {
        {GENERIC_READ, 0, ERROR_SHARING_VIOLATION},
        {GENERIC_WRITE, FILE_SHARE_WRITE, ERROR_SHARING_VIOLATION},
        {GENERIC_READ, FILE_SHARE_READ, 0},
        {GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, 0},
        {GENERIC_READ | GENERIC_WRITE | DELETE, kSharedByAll, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nAccess << ' ' << row.nShared);
        const OtherHandle other(path, row.nAccess, row.nShared);
        ASSERT_TRUE(other.IsOpen());
        EXPECT_EQ(ErrorOf(NameOf(path)), row.nError);
    }
    EXPECT_EQ(ErrorOf(NameOf(path)), 0);
}

TEST_F(FileTest, LeavesOthersFreeToWriteRenameAndDelete)
{
    const std::filesystem::path path = Write("quotes.txt", "abc");
    int nError = -1;
    const File file = File::Open(NameOf(path), nError);
    for (const DWORD nAccess : {DWORD{GENERIC_READ}, DWORD{GENERIC_WRITE}, DWORD{DELETE}}) {
        const OtherHandle other(path, nAccess, kSharedByAll);
        EXPECT_TRUE(other.IsOpen()) << nAccess;
    }
    // Opening it for exclusive use fails.
    EXPECT_FALSE(OtherHandle(path, GENERIC_READ, 0).IsOpen());
}

} // namespace
