// The user's key by which a failed initialisation is shown.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/MessageBox.h"
#include "tests/diagnostics/fake_root.h"

namespace {

constexpr wchar_t kKey[] = L"Software\\Qorlane\\Faultmere";

void RemoveKey()
{
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
}

void WriteKey(const wchar_t* name, const wchar_t* value)
{
    HKEY hKey = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_WRITE,
                                             nullptr, &hKey, nullptr));
    const auto nBytes = static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExW(hKey, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), nBytes));
    RegCloseKey(hKey);
}

// Keeps the messages that would be shown, and leaves no key.
class FailedInitialisation : public testing::Test
{
protected:
    FailedInitialisation()
    {
        RemoveKey();
        m_before = SetWarningListener([this](LONG_PTR hWnd, string_view_t text) {
            EXPECT_EQ(0, hWnd);
            m_shown.emplace_back(text);
        });
    }
    ~FailedInitialisation() override
    {
        SetWarningListener(m_before);
        RemoveKey();
    }

    using Texts = std::vector<string_t>;
    Texts m_shown;

private:
    WarningListener m_before;
};

} // namespace

TEST_F(FailedInitialisation, IsSilentWithoutTheKey)
{
    EXPECT_EQ(E_FAIL, TestClient().Initialise());
    EXPECT_EQ(Texts(), m_shown);
}

TEST_F(FailedInitialisation, IsSilentWithAKeyWithoutADefaultValue)
{
    WriteKey(L"Other", L"1");
    EXPECT_EQ(E_FAIL, TestClient().Initialise());
    EXPECT_EQ(Texts(), m_shown);
}

TEST_F(FailedInitialisation, IsShownOnceWithADefaultValue)
{
    WriteKey(nullptr, L"1");
    TestClient client;
    EXPECT_EQ(E_FAIL, client.Initialise());
    EXPECT_EQ(S_OK, client.Initialise());
    EXPECT_EQ(E_FAIL, client.IsClean());
    EXPECT_EQ(Texts({L"Faultmere Init Failed."}), m_shown);
}

TEST_F(FailedInitialisation, IsShownForARefusedSession)
{
    WriteKey(nullptr, L"1");
    ReportDiary diary;
    diary.answers = {{"INIT", E_FAIL}, {"fallback", E_ACCESSDENIED}};
    EXPECT_EQ(E_ACCESSDENIED, TestClient(diary).Initialise());
    EXPECT_EQ(Texts({L"Faultmere Init Failed."}), m_shown);
}

TEST_F(FailedInitialisation, OfNoneIsNotShown)
{
    WriteKey(nullptr, L"1");
    ReportDiary diary;
    TestClient client(diary);
    EXPECT_EQ(S_OK, client.Initialise());
    EXPECT_EQ(Texts(), m_shown);
}
