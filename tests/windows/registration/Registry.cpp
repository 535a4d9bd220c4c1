#include "tests/windows/registration/Registry.h"

#include <gtest/gtest.h>

namespace {

constexpr DWORD kLongest = 1024; // of names and values, in units

class Key
{
public:
    explicit Key(const string_t& path)
    {
        RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &m_hKey);
    }
    ~Key()
    {
        if (m_hKey)
            RegCloseKey(m_hKey);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    std::set<string_t> Keys() const
    {
        std::set<string_t> names;
        OLECHAR name[kLongest];
        for (DWORD i = 0, n = kLongest; RegEnumKeyExW(m_hKey, i, name, &n, nullptr, nullptr,
                                                      nullptr, nullptr) == ERROR_SUCCESS;
             ++i, n = kLongest)
            names.insert(name);
        return names;
    }

    // By name; that of the default value is empty.
    Values NamedValues() const
    {
        Values values;
        OLECHAR name[kLongest], text[kLongest];
        DWORD nName = kLongest, nText = sizeof text, type = 0;
        for (DWORD i = 0; RegEnumValueW(m_hKey, i, name, &nName, nullptr, &type,
                                        reinterpret_cast<BYTE*>(text), &nText) == ERROR_SUCCESS;
             ++i, nName = kLongest, nText = sizeof text) {
            EXPECT_EQ(DWORD{REG_SZ}, type);
            values[name] = text;
        }
        return values;
    }

private:
    HKEY m_hKey = nullptr;
};

void Create(const string_t& key, DWORD options, const string_t& value)
{
    HKEY hKey = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, options,
                                             KEY_WRITE, nullptr, &hKey, nullptr));
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExW(hKey, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                             static_cast<DWORD>((value.size() + 1) * sizeof(OLECHAR))));
    RegCloseKey(hKey);
}

} // namespace

std::set<string_t> KeysOfComponents()
{
    std::set<string_t> keys = Key(L"").Keys();
    for (const string_t parent : {L"CLSID", L"AppID", L"TypeLib", L"Interface"})
        for (const string_t& name : Key(parent).Keys())
            keys.insert(parent + L"\\" + name);
    return keys;
}

Values ValuesUnder(const string_t& path)
{
    const Key key(path);
    Values values = {{path, L""}};
    for (const auto& [name, text] : key.NamedValues())
        values[name.empty() ? path : path + L":" + name] = text;
    for (const string_t& name : key.Keys())
        values.merge(ValuesUnder(path + L"\\" + name));
    return values;
}

void WriteKey(const string_t& key, const string_t& value)
{
    Create(key, REG_OPTION_NON_VOLATILE, value);
}

void WriteVolatileKey(const string_t& key)
{
    Create(key, REG_OPTION_VOLATILE, L"");
}

void DeleteKey(const string_t& key)
{
    RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
}
