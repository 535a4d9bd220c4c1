// The rule for a symbol runs once, also for a file with a header. Then, without a header,
// up to 20 passes follow. A pass runs the rules in order and ends with the first that
// changes something; the refinement ends with a pass that changes nothing. Files whose
// swaps keep undoing each other stop at the limit.
//
// A rule looks at ten records, 100 apart, until one of them shows what it looks for; the
// last three rules look at the record that was sampled last by any rule.

#include "src/parsing/detection/FieldTypeRefinement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "platform/values.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordText.h"
#include "src/parsing/detection/RecordSource.h"
#include "src/parsing/templates/NumberText.h"

namespace Hesperon::specifics {
namespace {

constexpr unsigned kMaxPasses = 20;
constexpr ULONGLONG kSamples = 10;
constexpr ULONGLONG kSampleDistance = 100;
constexpr double kAlike = 0.75; // quotient from which two values are of one size

// Notes the columns whose types a rule changes.
class TypeChanges
{
public:
    TypeChanges(const ParserState& state, DetectionReport& report, RefinementRule rule)
        : m_state(state), m_report(report), m_rule(rule)
    {
        if (report.IsKept())
            for (const CDataField& field : state.m_fields)
                m_before.push_back(field.GetType());
    }

    void Note(ULONGLONG nRecord) const
    {
        for (std::size_t i = 0; i < m_before.size(); ++i)
            if (const unsigned uiType = m_state.m_fields[i].GetType(); uiType != m_before[i])
                m_report.Add([&, this] {
                    return ColumnRetyped{m_rule, i, m_before[i], uiType, nRecord};
                });
    }

private:
    const ParserState& m_state;
    DetectionReport& m_report;
    const RefinementRule m_rule;
    std::vector<unsigned> m_before; // empty while there is no report
};

class Refinement
{
public:
    Refinement(ParserState& state, DetectionReport& report)
        : m_state(state), m_report(report), m_source(state.m_pDataParser)
    {}

    void Run()
    {
        for (m_nPass = 0; m_nPass < kMaxPasses; ++m_nPass)
            if (!RunPass())
                break;
    }

private:
    struct Rule
    {
        RefinementRule name;
        bool (Refinement::*apply)(); // true: something changed
    };

    bool RunPass()
    {
        static constexpr Rule kRules[] = {
            {RefinementRule::UpAndDownTicks, &Refinement::DropUpAndDownTicks},
            {RefinementRule::UpAndDownVolumes, &Refinement::DropUpAndDownVolumes},
            {RefinementRule::OpenInterest, &Refinement::FillOpenInterest},
            {RefinementRule::VolumeAndOpenInterest, &Refinement::OrderVolumeAndOpenInterest},
            {RefinementRule::VolumeAmongPrices, &Refinement::FindVolumeAmongPrices},
            {RefinementRule::Bar, &Refinement::OrderBar},
            {RefinementRule::Totals, &Refinement::OrderTotals},
            {RefinementRule::TicksAndVolumes, &Refinement::OrderTicksAndVolumes},
            {RefinementRule::Sum, &Refinement::FindSum},
        };
        return std::ranges::any_of(kRules, [this](const Rule& rule) { return Apply(rule); });
    }

    bool Apply(const Rule& rule)
    {
        const TypeChanges changes(m_state, m_report, rule.name);
        const bool bChanged = (this->*rule.apply)();
        changes.Note(m_nSample);
        return bChanged;
    }

    // ---- columns

    std::size_t Index(unsigned uiType) const { return m_state.Index(uiType); }
    bool Has(unsigned uiType) const { return Index(uiType) != kNoColumn; }
    bool Admits(unsigned uiType) const { return IsValidType(uiType, m_state.m_nResolution); }
    void Swap(std::size_t a, std::size_t b) { m_state.m_fields[a].Swap(m_state.m_fields[b]); }
    bool SwapTypes(unsigned a, unsigned b)
    {
        Swap(Index(a), Index(b));
        return true;
    }
    void Unassign(unsigned uiType)
    {
        if (CDataField* column = m_state.Column(uiType))
            column->SetType(kNoType);
    }

    // ---- samples

    // Calls visit() on each sampled record until it gives true; gives whether it did.
    // A position that isn't there ends the samples.
    template <class Visit>
    bool AnySample(Visit visit)
    {
        for (ULONGLONG i = 0; i < kSamples; ++i) {
            if (!m_source.Seek(i * kSampleDistance))
                return false;
            string_t sRecord;
            if (FAILED(m_source.Read(sRecord)))
                continue;
            m_nSample = i * kSampleDistance;
            m_sSample = std::move(sRecord);
            ParseColumns(m_state, *m_sSample);
            if (visit())
                return true;
        }
        return false;
    }

    std::optional<string_view_t> Text(std::size_t nColumn) const
    {
        if (nColumn == kNoColumn)
            return {};
        return FieldAt(*m_sSample, m_state.m_dividers, nColumn);
    }
    std::optional<double> Number(unsigned uiType) const
    {
        const auto sText = Text(Index(uiType));
        return sText ? std::optional(TextToDouble(*sText)) : std::nullopt;
    }
    std::optional<LONGLONG> Whole(std::size_t nColumn) const
    {
        const auto sText = Text(nColumn);
        return sText ? std::optional<LONGLONG>(TextToInt32(*sText)) : std::nullopt;
    }
    std::optional<LONGLONG> WholeOf(unsigned uiType) const { return Whole(Index(uiType)); }

    // ---- rules

    bool DropUpAndDownTicks() { return DropUpAndDown(TypeUpTicks, TypeDownTicks, TypeTotalTicks); }
    bool DropUpAndDownVolumes() { return DropUpAndDown(TypeUpVolume, TypeDownVolume, TypeVolume); }

    // Up and down columns don't survive. Where one of them is above the total in the first
    // sample in which they don't add up, that one is the total.
    bool DropUpAndDown(unsigned uiUp, unsigned uiDown, unsigned uiTotal)
    {
        if (!Has(uiUp) && !Has(uiDown))
            return false;
        if (Has(uiUp) && Has(uiDown) && Has(uiTotal))
            AnySample([&] { return CheckTotal(uiUp, uiDown, uiTotal); });
        Unassign(uiUp);
        Unassign(uiDown);
        return true;
    }

    bool CheckTotal(unsigned uiUp, unsigned uiDown, unsigned uiTotal)
    {
        const auto up = WholeOf(uiUp);
        const auto down = WholeOf(uiDown);
        const auto total = WholeOf(uiTotal);
        if (!up || !down || !total || *total == *up + *down)
            return false;
        if (*up > *total)
            return SwapTypes(uiTotal, uiUp);
        if (*down > *total)
            return SwapTypes(uiTotal, uiDown);
        Unassign(uiUp);
        Unassign(uiDown);
        return true;
    }

    bool FillOpenInterest()
    {
        if (!Admits(TypeOpenInterest) || Has(TypeOpenInterest) || !Has(kNoType))
            return false;
        m_state.m_fields[Index(kNoType)].SetType(TypeOpenInterest);
        return true;
    }

    bool OrderVolumeAndOpenInterest()
    {
        if (!Admits(TypeVolume) || !Admits(TypeOpenInterest) || !Has(TypeVolume) ||
            !Has(TypeOpenInterest))
            return false;
        const bool bHit = AnySample([&] {
            const auto volume = WholeOf(TypeVolume);
            const auto interest = WholeOf(TypeOpenInterest);
            return volume && interest && *volume > *interest;
        });
        return bHit && SwapTypes(TypeVolume, TypeOpenInterest);
    }

    // A price within a quarter of the volume, while another price is far off, is
    // really the volume. Each pass begins at another price.
    bool FindVolumeAmongPrices()
    {
        constexpr std::array<unsigned, 4> kPrices = {TypeOpen, TypeHigh, TypeLow, TypeClose};
        std::array<unsigned, 2> found{};
        std::size_t nFound = 0;
        for (std::size_t i = 0; i < kPrices.size() && nFound < found.size(); ++i)
            if (const unsigned uiType = kPrices[(m_nPass + i) % kPrices.size()]; Has(uiType))
                found[nFound++] = uiType;
        if (nFound < found.size() || !Has(TypeVolume))
            return false;
        const bool bHit = AnySample([&] { return IsVolumeLike(found[0], found[1]); });
        return bHit && SwapTypes(found[0], TypeVolume);
    }

    // `a` is the price in question, `b` another one. A price of 0 counts as a volume at once.
    bool IsVolumeLike(unsigned uiPrice, unsigned uiOther) const
    {
        const auto price = Number(uiPrice);
        const auto other = Number(uiOther);
        const auto volume = Number(TypeVolume);
        if (!price || !other || !volume)
            return false;
        const double a = std::abs(*price);
        const double b = std::abs(*other);
        const double v = *volume;
        if (a == 0)
            return true;
        if (b == 0 || std::min(a, b) / std::max(a, b) >= kAlike)
            return false;
        return (v > a ? a / v : v / a) > kAlike;
    }

    // In this order: the High above all others, then the Low below them.
    bool OrderBar()
    {
        struct Order
        {
            unsigned uiBelow;
            unsigned uiAbove;
        };
        static constexpr Order kOrders[] = {
            {TypeLow, TypeHigh}, {TypeOpen, TypeHigh}, {TypeClose, TypeHigh},
            {TypeLow, TypeOpen}, {TypeLow, TypeClose},
        };
        return std::ranges::any_of(
            kOrders, [this](const Order& o) { return SwapIfAbove(o.uiBelow, o.uiAbove); });
    }

    bool SwapIfAbove(unsigned uiBelow, unsigned uiAbove)
    {
        if (!Has(uiBelow) || !Has(uiAbove))
            return false;
        const bool bHit = AnySample([&] {
            const auto below = Number(uiBelow);
            const auto above = Number(uiAbove);
            return below && above && *below > *above;
        });
        return bHit && SwapTypes(uiBelow, uiAbove);
    }

    bool OrderTotals()
    {
        for (unsigned uiPart : {TypeUpVolume, TypeDownVolume, TypeUnchangedVolume})
            if (Has(uiPart) && Has(TypeTotalVolume) && IsValueAbove(uiPart, TypeTotalVolume))
                return SwapTypes(TypeTotalVolume, uiPart);
        return false;
    }

    bool IsValueAbove(unsigned uiLeft, unsigned uiRight)
    {
        Variant left;
        Variant right;
        if (FAILED(m_state.Column(uiLeft)->GetValue(&left)) ||
            FAILED(m_state.Column(uiRight)->GetValue(&right)) || left.vt != right.vt)
            return false;
        return left.vt == VT_R8 ? left.dblVal > right.dblVal : left.llVal > right.llVal;
    }

    bool OrderTicksAndVolumes()
    {
        struct Pair
        {
            unsigned uiTicks;
            unsigned uiVolume;
        };
        static constexpr Pair kPairs[] = {
            {TypeUpTicks, TypeUpVolume},
            {TypeDownTicks, TypeDownVolume},
            {TypeTotalTicks, TypeTotalVolume},
        };
        if (!m_sSample)
            return false;
        for (const Pair& pair : kPairs) {
            const auto ticks = WholeOf(pair.uiTicks);
            const auto volume = WholeOf(pair.uiVolume);
            if (ticks && volume && *ticks > *volume)
                return SwapTypes(pair.uiVolume, pair.uiTicks);
        }
        return false;
    }

    // A whole-number column that is the sum of two others is the total of an up and a
    // down volume.
    bool FindSum()
    {
        if (!m_sSample)
            return false;
        const std::size_t nColumns = m_state.m_fields.size();
        for (std::size_t i = 0; i < nColumns; ++i)
            for (std::size_t j = 0; j < nColumns; ++j)
                for (std::size_t k = 0; k < nColumns; ++k)
                    if (i != j && i != k && j != k && IsSum(i, j, k))
                        return NameSum(i, j, k);
        return false;
    }

    bool IsSum(std::size_t i, std::size_t j, std::size_t k) const
    {
        for (std::size_t n : {i, j, k})
            if (!IsWholeType(m_state.m_fields[n].GetType()))
                return false;
        const auto a = Whole(i);
        const auto b = Whole(j);
        const auto c = Whole(k);
        return a && b && c && *a != 0 && *a == *b + *c;
    }

    bool NameSum(std::size_t i, std::size_t j, std::size_t k)
    {
        const std::size_t nTotal = Index(TypeTotalVolume);
        const std::size_t nUp = Index(TypeUpVolume);
        const std::size_t nDown = Index(TypeDownVolume);
        if (nTotal == i && nUp == j && nDown == k)
            return true;
        MakeType(i, nTotal, TypeTotalVolume);
        MakeType(j, nUp, TypeUpVolume);
        MakeType(k, nDown, TypeDownVolume);
        return true;
    }

    // Gives a column the type, which column nHolder has, if any does.
    void MakeType(std::size_t nColumn, std::size_t nHolder, unsigned uiType)
    {
        if (nHolder == kNoColumn)
            m_state.m_fields[nColumn].SetTypeAndTemplate(uiType, OLESTR("int"));
        else
            Swap(nColumn, nHolder);
    }

    ParserState& m_state;
    DetectionReport& m_report;
    RecordSource m_source;
    unsigned m_nPass = 0;
    std::optional<string_t> m_sSample; // the last record that any rule sampled
    ULONGLONG m_nSample = kLastRecord; // its position; kLastRecord for none
};

// The first column is the symbol, whatever it holds, unless it is the date.
void PlaceSymbol(ParserState& state, FirstColumn firstColumn)
{
    if (state.m_fields[0].GetType() == TypeDate)
        return;
    if (CDataField* symbol = state.Column(TypeSymbol))
        symbol->SetTypeAndTemplate(kNoType, {});
    if (state.Column(TypeDate) && firstColumn == FirstColumn::MayBeSymbol)
        state.m_fields[0].SetTypeAndTemplate(TypeSymbol, OLESTR("*"));
}

} // namespace

void RefineFieldTypes(ParserState& state, FirstColumn firstColumn, DetectionReport& report)
{
    if (state.m_fields.empty())
        return;
    const TypeChanges changes(state, report, RefinementRule::Symbol);
    PlaceSymbol(state, firstColumn);
    changes.Note(kLastRecord);
    string_t sRecord;
    if (state.m_bHasHeader || FAILED(RecordSource(state.m_pDataParser).Read(sRecord)))
        return;
    Refinement(state, report).Run();
}

} // namespace Hesperon::specifics
