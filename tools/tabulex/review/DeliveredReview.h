// DeliveredReview: watches the days of the rows that a run delivers.
//
// What the first and the last lines of a file leave open the rest may decide: whether its dates
// can be read in another order as well. Days that nobody expects, long ago or in the future, show
// that they were read wrong. A row costs a comparison; only a new day costs more.
//
// A run calls Take with each batch and End before its outputs are kept. Used by one thread.
#pragma once

#include <bitset>
#include <optional>
#include <vector>

#include "tools/tabulex/account/LineMap.h"
#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/review/DateOrder.h"

namespace tabulex {

// What the days of a file say against reading its dates in another order.
class DateOrderReview
{
public:
    // A row, by the batch's first position and its place in the batch; lines that weren't
    // delivered aren't counted, so the record stands there or a little later.
    struct Place
    {
        ULONGLONG nBatchStart = 0;
        ULONGLONG nRow = 0;
        LONG nDay = 0;
    };

    struct Evidence
    {
        std::string sTemplate;           // of the other order
        std::size_t nDays = 0;           // different days
        std::size_t nDeciding = 0;       // of them, those that the other order can't read
        std::size_t nBack = 0;           // of them, those where it would go back
        std::optional<Place> firstOpen;  // day that both read, and not as the same
        std::optional<Place> firstClear; // day that decides
    };

    // bRunsOn: days go back in the file only where the order is wrong.
    DateOrderReview(DateOrder order, bool bRunsOn);

    void TakeNewDay(const Place& place);
    std::vector<Evidence> Result() const;
    const DateOrder& Order() const { return m_order; }

private:
    struct Other
    {
        Evidence evidence;
        std::optional<LONG> nBefore;
    };

    void Judge(std::size_t n, const Place& place, bool bNew);

    DateOrder m_order;
    bool m_bRunsOn;
    std::vector<Other> m_others;
    std::size_t m_nDays = 0;
    LONG m_nBefore = 0;
    std::bitset<1 << 16> m_seen; // by day
};

class DeliveredReview
{
public:
    // Of a file as it is set now. The order of dates isn't questioned where the settings give
    // their template. The host must outlive this.
    DeliveredReview(const Host& host, const Settings& settings);

    // The rows of the batch that begins nBatchStart records after the first one; cells lie row
    // after row, each with its columns side by side.
    void Take(const VARIANT* cells, ULONGLONG nRows, ULONGLONG nBatchStart);

    // After the run, of whose file the map is.
    void End(LineMap& lines, Warnings& warnings);

private:
    struct Days
    {
        ULONGLONG nRows = 0;
        std::optional<DateOrderReview::Place> first;
    };

    void TakeDay(LONG nDay, const DateOrderReview::Place& place);
    void WarnOfOpenOrder(const std::vector<DateOrderReview::Evidence>& orders,
                         const std::vector<std::size_t>& open, LineMap& lines,
                         Warnings& warnings) const;
    void WarnOfFewDays(const DateOrderReview::Evidence& evidence, LineMap& lines,
                       Warnings& warnings) const;
    void WarnOfDays(const Days& days, std::string_view when, LineMap& lines,
                    Warnings& warnings) const;
    std::string SettingOf(const std::string& sTemplate) const;

    const Host& m_host;
    ULONGLONG m_nFirst;          // position of the run's first record
    std::size_t m_nColumns = 0;  // of a row
    std::size_t m_nDateCell = 0; // of a row
    ULONG m_nDateField = 0;      // of the file
    std::string m_sTemplate;
    bool m_bShortYear = false;
    std::optional<DateOrderReview> m_order;
    LONG m_nToday;
    LONG m_nBefore = -1;
    Days m_early; // before 1900
    Days m_late;  // after today
};

} // namespace tabulex
