#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/values.h"

namespace {

std::uint32_t ByteCountInFront(BSTR text)
{
    std::uint32_t n = 0;
    std::memcpy(&n, reinterpret_cast<const char*>(text) - 4, sizeof n);
    return n;
}

TEST(Bstr, NullIsEmptyAndMayBeFreed)
{
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
    SysFreeString(nullptr);
}

TEST(Bstr, OfNullTextIsNull)
{
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(Bstr, HasItsByteCountInFrontAndAZeroBehind)
{
    for (const string_view_t text :
         {string_view_t(OLESTR("")), string_view_t(OLESTR("a")), string_view_t(OLESTR("a\0b\0"), 4),
          string_view_t(OLESTR("Test"))}) {
        SCOPED_TRACE(Narrow(text));
        const Bstr bstr(text);
        EXPECT_EQ(bstr.view(), text);
        EXPECT_EQ(SysStringLen(bstr.get()), text.size());
        EXPECT_EQ(ByteCountInFront(bstr.get()), text.size() * 2);
        EXPECT_EQ(bstr.get()[text.size()], 0);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bstr.get()) % 4, 0u);
    }
}

TEST(Bstr, TakesTextUpToItsFirstZero)
{
    const BSTR text = SysAllocString(OLESTR("ab\0c"));
    EXPECT_EQ(TextOf(text), OLESTR("ab"));
    SysFreeString(text);
}

TEST(Bstr, WithoutContentIsTerminated)
{
    for (const UINT units : {0u, 1u, 7u, 4096u}) {
        SCOPED_TRACE(units);
        const BSTR text = SysAllocStringLen(nullptr, units);
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(SysStringLen(text), units);
        EXPECT_EQ(text[units], 0);
        std::memset(text, 0x55, units * sizeof(OLECHAR));
        SysFreeString(text);
    }
}

TEST(Bstr, MayHoldAnOddNumberOfBytes)
{
    const BSTR text = SysAllocStringByteLen("Test?", 3);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringByteLen(text), 3u);
    EXPECT_EQ(SysStringLen(text), 1u);
    EXPECT_EQ(std::memcmp(text, "Tes\0", 4), 0);
    SysFreeString(text);
}

TEST(Bstr, OfImpossibleSizeIsNull)
{
    EXPECT_EQ(SysAllocStringByteLen("a", 0xFFFFFFFF), nullptr);
}

TEST(BstrReallocation, ReplacesTheText)
{
    BSTR text = SysAllocString(OLESTR("Test"));
    EXPECT_EQ(SysReAllocStringLen(&text, OLESTR("Larger"), 6), 1);
    EXPECT_EQ(TextOf(text), OLESTR("Larger"));
    EXPECT_EQ(SysReAllocStringLen(&text, OLESTR("x"), 1), 1);
    EXPECT_EQ(TextOf(text), OLESTR("x"));
    SysFreeString(text);
}

TEST(BstrReallocation, AcceptsTheTextItself)
{
    BSTR text = SysAllocString(OLESTR("Larger"));
    EXPECT_EQ(SysReAllocStringLen(&text, text, 6), 1);
    EXPECT_EQ(TextOf(text), OLESTR("Larger"));
    EXPECT_EQ(SysReAllocStringLen(&text, text, 3), 1);
    EXPECT_EQ(TextOf(text), OLESTR("Lar"));
    SysFreeString(text);
}

TEST(BstrReallocation, WithoutTextKeepsWhatFitsAndTerminates)
{
    BSTR text = SysAllocString(OLESTR("abcdef"));
    EXPECT_EQ(SysReAllocStringLen(&text, nullptr, 3), 1);
    EXPECT_EQ(TextOf(text), OLESTR("abc"));
    EXPECT_EQ(text[3], 0);
    EXPECT_EQ(SysReAllocStringLen(&text, nullptr, 200), 1);
    EXPECT_EQ(SysStringLen(text), 200u);
    EXPECT_EQ(TextOf(text).substr(0, 3), OLESTR("abc"));
    EXPECT_EQ(text[200], 0);
    SysFreeString(text);
}

TEST(BstrOwner, CopiesAndMoves)
{
    Bstr first(OLESTR("one"));
    Bstr copy(first);
    EXPECT_NE(copy.get(), first.get());
    EXPECT_EQ(copy.view(), OLESTR("one"));
    const BSTR raw = first.get();
    Bstr moved(std::move(first));
    EXPECT_EQ(moved.get(), raw);
    EXPECT_FALSE(first);
    *moved.put() = SysAllocString(OLESTR("two"));
    EXPECT_EQ(moved.str(), OLESTR("two"));
}

struct Comparison
{
    string_view_t left;
    string_view_t right;
    HRESULT result;
};

TEST(BstrComparison, IsThatOfTheLanguage)
{
    const Comparison rows[] = {
        {OLESTR(""), OLESTR(""), VARCMP_EQ},
        {OLESTR("MSFT"), OLESTR("MSFT"), VARCMP_EQ},
        {OLESTR("a"), OLESTR(""), VARCMP_GT},
        {OLESTR(""), OLESTR("a"), VARCMP_LT},
        {OLESTR("a"), OLESTR("b"), VARCMP_LT},
        {OLESTR("b"), OLESTR("a"), VARCMP_GT},
        {OLESTR("a"), OLESTR("A"), VARCMP_LT},
        {OLESTR("B"), OLESTR("a"), VARCMP_GT},
        {OLESTR("a"), OLESTR("B"), VARCMP_LT},
        {OLESTR("1"), OLESTR("a"), VARCMP_LT},
        {OLESTR("ab"), OLESTR("abc"), VARCMP_LT},
        {OLESTR("\u00E4"), OLESTR("z"), VARCMP_LT},
        {string_view_t(OLESTR("a\0"), 2), OLESTR("a"), VARCMP_EQ},
        {string_view_t(OLESTR("a\0b"), 3), OLESTR("a"), VARCMP_GT},
        {string_view_t(OLESTR("\0"), 1), OLESTR(""), VARCMP_GT},
    };
    for (const Comparison& row : rows) {
        SCOPED_TRACE(Narrow(row.left) + " | " + Narrow(row.right));
        const Bstr left(row.left);
        const Bstr right(row.right);
        EXPECT_EQ(VarBstrCmp(left.get(), right.get(), LOCALE_USER_DEFAULT, 0), row.result);
    }
}

TEST(BstrComparison, TakesNullForEmpty)
{
    const Bstr empty{string_view_t()};
    const Bstr text(OLESTR("Wurscht"));
    EXPECT_EQ(VarBstrCmp(nullptr, nullptr, LOCALE_USER_DEFAULT, 0), VARCMP_EQ);
    EXPECT_EQ(VarBstrCmp(nullptr, empty.get(), LOCALE_USER_DEFAULT, 0), VARCMP_EQ);
    EXPECT_EQ(VarBstrCmp(empty.get(), nullptr, LOCALE_USER_DEFAULT, 0), VARCMP_EQ);
    EXPECT_EQ(VarBstrCmp(text.get(), nullptr, LOCALE_USER_DEFAULT, 0), VARCMP_GT);
    EXPECT_EQ(VarBstrCmp(nullptr, text.get(), LOCALE_USER_DEFAULT, 0), VARCMP_LT);
}

} // namespace
