// The numbers that a plan reads against the record parser's calls, and against std::from_chars:
// each value must be the same to the bit.
//
// Four prices and a whole number make a record. TABULEX_ROUNDS says how much is compared: with 1000
// all texts of up to seven digits with the mark at each place, and 50 million random longer ones.

#include <array>
#include <bit>
#include <charconv>
#include <random>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "src/parsing/IBatchLock.h"
#include "src/parsing/plan/RowPlan.h"
#include "tests/parsing/Layout.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

constexpr std::size_t kPrices = 4;
using Prices = std::array<std::string, kPrices>;

std::uint64_t BitsOf(const VARIANT& value)
{
    return static_cast<std::uint64_t>(value.llVal);
}

// A record of numbers, read in each of the three ways.
class NumberFile
{
public:
    NumberFile() : m_lock(Prepared()), m_pPlan(m_lock.PlanRows(kFields)) {}

    bool HasPlan() const { return m_pPlan != nullptr; }
    std::size_t Read() const { return m_nRead; }
    std::size_t Unread() const { return m_nUnread; }

    void Compare(const Prices& prices, const std::string& sWhole)
    {
        m_sBytes = fmt::format("20040105;{};{};{};{};{}", prices[0], prices[1], prices[2],
                               prices[3], sWhole);
        const std::size_t nSize = m_sBytes.size();
        m_sBytes.append(PlainRecord::kPadding, '7'); // that must not be read
        const std::string_view sRecord = std::string_view(m_sBytes).substr(0, nSize);
        DATE moment = 0;
        if (!m_pPlan->ReadMoment(sRecord, moment) || !m_pPlan->ReadRow(m_row.data())) {
            ++m_nUnread;
            return;
        }
        ++m_nRead;
        CompareWithCalls(sRecord);
        for (std::size_t k = 0; k < kPrices; ++k)
            CompareWithFromChars(prices[k], m_row[k + 1]);
    }

private:
    static constexpr std::array<ULONG, kPrices + 2> kFields = {0, 1, 2, 3, 4, 5};

    IQRL_TabulexConverter::IRecordParser* Prepared()
    {
        EXPECT_EQ(S_OK, m_file.Offer(AllResolutions()));
        EXPECT_EQ(S_OK, m_file.Load());
        return m_file.Parser();
    }

    void CompareWithCalls(std::string_view sRecord)
    {
        m_sWide.assign(sRecord.begin(), sRecord.end());
        m_file.Parse(m_sWide);
        for (std::size_t k = 1; k < kFields.size(); ++k) {
            Variant judged;
            const HRESULT hr = m_file->GetFieldValue(judged.put(), kFields[k]);
            if (hr != S_OK || judged.vt != m_row[k].vt || BitsOf(judged) != BitsOf(m_row[k]))
                ADD_FAILURE() << sRecord << ", column " << k << ": the calls give another value";
        }
    }

    // Which knows no blanks, no sign ahead of a positive number, and one mark.
    static void CompareWithFromChars(std::string sText, const VARIANT& value)
    {
        std::erase(sText, ' ');
        if (const std::size_t nMark = sText.find(','); nMark != std::string::npos)
            sText[nMark] = '.';
        const char* const p = sText.data() + (sText.front() == '+');
        double fJudged = 0;
        const auto [end, error] = std::from_chars(p, sText.data() + sText.size(), fJudged);
        if (error != std::errc() || end != sText.data() + sText.size() ||
            std::bit_cast<std::uint64_t>(fJudged) != BitsOf(value))
            ADD_FAILURE() << sText << ": from_chars gives " << fJudged << ", not " << value.dblVal;
    }

    ParsedFile m_file{std::vector<string_t>{OLESTR("Date;Open;High;Low;Close;Volume"),
                                            OLESTR("20040105;1.5;1.5;1.5;1.5;10"),
                                            OLESTR("20040106;1.5;1.5;1.5;1.5;10")}};
    BatchLockGuard m_lock;
    RowPlan* m_pPlan;
    std::array<VARIANT, kPrices + 2> m_row{};
    std::string m_sBytes;
    string_t m_sWide;
    std::size_t m_nRead = 0, m_nUnread = 0; // records
};

class Digits
{
public:
    Digits() : m_random(Seed()) {}

    std::size_t Below(std::size_t n) { return m_random() % n; }

    std::string Of(std::size_t nCount)
    {
        std::string sDigits(nCount, '0');
        for (char& c : sDigits)
            c = static_cast<char>('0' + Below(10));
        return sDigits;
    }
    // With a mark among them, at their ends or nowhere, and at times a sign.
    std::string Number(std::size_t nCount)
    {
        std::string sNumber = Of(nCount);
        if (const std::size_t at = Below(nCount + 2); at <= nCount)
            sNumber.insert(at, 1, Below(4) == 0 ? ',' : '.');
        return Below(4) == 0 ? "-+"[Below(2)] + sNumber : sNumber;
    }

private:
    std::mt19937_64 m_random;
};

} // namespace

TEST(NumberProof, AllShortTexts)
{
    NumberFile file;
    ASSERT_TRUE(file.HasPlan());
    const int nMost = std::min(Rounds(10'000), 10'000'000);
    Prices prices;
    std::size_t nPrice = 0;
    for (int nDigits = 1, nEnd = 10; nEnd <= nMost && !HasFailure(); ++nDigits, nEnd *= 10)
        for (int n = 0; n < nEnd && !HasFailure(); ++n) {
            const std::string sDigits = fmt::format("{:0{}}", n, nDigits);
            for (int nPlace = 0; nPlace <= nDigits + 1; ++nPlace) {
                std::string& sPrice = prices[nPrice] = sDigits;
                if (nPlace <= nDigits)
                    sPrice.insert(static_cast<std::size_t>(nPlace), 1, '.');
                nPrice = (nPrice + 1) % kPrices;
                if (nPrice == 0)
                    file.Compare(prices, sDigits);
            }
        }
    file.Compare(prices, "0"); // what is left
    EXPECT_EQ(0u, file.Unread());
    EXPECT_LT(0u, file.Read());
}

TEST(NumberProof, RandomTexts)
{
    NumberFile file;
    ASSERT_TRUE(file.HasPlan());
    Digits digits;
    const int nRecords = Rounds(50'000) / static_cast<int>(kPrices);
    for (int i = 0; i < nRecords && !HasFailure(); ++i) {
        Prices prices;
        for (std::string& sPrice : prices)
            sPrice = digits.Number(8 + digits.Below(8));
        file.Compare(prices, digits.Of(8 + digits.Below(11)));
    }
    EXPECT_EQ(0u, file.Unread()); // a double holds fifteen digits, and 64 bits eighteen
}

// Too long for the plan, or just not.
TEST(NumberProof, LongTexts)
{
    NumberFile file;
    ASSERT_TRUE(file.HasPlan());
    Digits digits;
    const int nRecords = Rounds(10'000);
    for (int i = 0; i < nRecords && !HasFailure(); ++i) {
        const std::string sZeros(digits.Below(2) * digits.Below(12), '0');
        file.Compare({sZeros + digits.Number(12 + digits.Below(14)), "1", "2", "3"},
                     digits.Below(4) == 0 ? sZeros + digits.Of(15 + digits.Below(8)) : "4");
    }
    EXPECT_LT(0u, file.Unread());
    EXPECT_LT(static_cast<std::size_t>(nRecords / 8), file.Read());
}

// Texts that may be no number: what the plan takes for one, the calls take for the same.
TEST(NumberProof, OtherTexts)
{
    constexpr std::string_view kOthers = "0123456789012345678901234567890.,+-:/eE xX%$_~<=>?@^#!*&";
    NumberFile file;
    ASSERT_TRUE(file.HasPlan());
    Digits digits;
    const int nRecords = Rounds(50'000);
    for (int i = 0; i < nRecords && !HasFailure(); ++i) {
        std::string sText(1 + digits.Below(10), '0');
        for (char& c : sText)
            c = kOthers[digits.Below(digits.Below(3) == 0 ? kOthers.size() : 12)];
        if (digits.Below(2) == 0)
            file.Compare({"1.5", sText, "12345678", "3"}, "4");
        else
            file.Compare({"1.5", "1", "2", "3"}, sText);
    }
    EXPECT_LT(0u, file.Unread());
    EXPECT_LT(static_cast<std::size_t>(nRecords / 8), file.Read());
}
