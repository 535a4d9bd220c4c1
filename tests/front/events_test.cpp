// What the object answers when somebody calls its IDataParserEvents.

#include "tests/front/Messages.h"
#include "tests/front/ScriptedHost.h"

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParserEvents.h"

using namespace IQRL_TabulexConverter;

namespace {

// An array of one dimension or more; each bound is a count and a lower bound.
Variant ArrayOf(VARTYPE nKind, std::vector<SAFEARRAYBOUND> bounds)
{
    return Variant::FromArray(
        SafeArrayCreate(nKind, static_cast<UINT>(bounds.size()), bounds.data()), nKind);
}

class Events : public FrontFixture
{
protected:
    void SetUp() override
    {
        FrontFixture::SetUp();
        ASSERT_EQ(Open(*front.get(), file), S_OK);
    }

    static com_ptr<IDataParserEvents> EventsOf(IDispatch* pObject)
    {
        com_ptr<IDataParserEvents> events;
        EXPECT_EQ(query(pObject, events), S_OK);
        return events;
    }

    // A copy has a progress box that isn't open.
    com_ptr<IDataParserEvents> EventsOfACopy()
    {
        com_ptr<IDispatch> copy;
        EXPECT_EQ(front->Clone(copy.put()), S_OK);
        return EventsOf(copy.get());
    }

    // Calls the object's events while it checks its settings, from within the sink.
    template <class Call>
    HRESULT DuringACheck(Call call)
    {
        HRESULT hr = E_UNEXPECTED;
        const auto events = EventsOf(front.get());
        sink->onEntry = [&](const std::string& entry) {
            if (entry.starts_with("error") && std::exchange(bFirst, false))
                hr = call(*events.get());
        };
        front->put_ResolutionTemplate(HostResolutionNone);
        EXPECT_EQ(front->CheckConverterSettings(0, sink.get()), S_FALSE);
        sink->onEntry = nullptr;
        return hr;
    }

    const TempFile file{Minutes(50)}; // seven columns: Date, Time, four prices, Volume
    bool bFirst = true;
};

// ---- outside of a session

TEST_F(Events, WithoutASessionThereIsNobodyToHearThem)
{
    const auto events = EventsOf(front.get());
    EXPECT_EQ(events->PutRecords(Variant(), 0), E_NOINTERFACE);
    EXPECT_EQ(events->OnError(Variant()), E_UNEXPECTED);
    EXPECT_EQ(events->OnError2(1, 1, nullptr), S_FALSE);
    EXPECT_EQ(events->GetResolutionName(5, nullptr), E_POINTER);
    EXPECT_EQ(events->EndTransaction(VARIANT_TRUE), S_OK);
}

// ---- batches

// An array, and what the object says to it.
struct ShapeRow
{
    const char* pszWhat;
    VARTYPE nKind;
    std::vector<SAFEARRAYBOUND> bounds;
    HRESULT hr;
};

std::string RowName(const testing::TestParamInfo<ShapeRow>& row)
{
    std::string name = row.param.pszWhat;
    std::ranges::replace(name, ' ', '_');
    return name;
}

class EventsBatch : public Events, public testing::WithParamInterface<ShapeRow>
{};

TEST_P(EventsBatch, OfAnotherShapeIsRefused)
{
    const ShapeRow& row = GetParam();
    const Variant batch = ArrayOf(row.nKind, row.bounds);
    EXPECT_EQ(DuringACheck([&](IDataParserEvents& events) { return events.PutRecords(batch, 2); }),
              row.hr);
    EXPECT_EQ(sink->transcript.size(), 1u) << "the sink heard more than the check's error";
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, EventsBatch,
    testing::Values(ShapeRow{"one dimension", VT_VARIANT, {{7, 0}}, E_INVALIDARG},
                    ShapeRow{
                        "three dimensions", VT_VARIANT, {{7, 0}, {2, 0}, {1, 0}}, E_INVALIDARG},
                    ShapeRow{"a column less", VT_VARIANT, {{6, 0}, {2, 0}}, E_INVALIDARG},
                    ShapeRow{"a column more", VT_VARIANT, {{8, 0}, {2, 0}}, E_INVALIDARG},
                    ShapeRow{"cells without dates", VT_VARIANT, {{7, 0}, {2, 0}}, E_INVALIDARG},
                    ShapeRow{"numbers for cells", VT_I4, {{7, 0}, {2, 0}}, E_INVALIDARG},
                    ShapeRow{"bytes for cells", VT_UI1, {{7, 0}, {2, 0}}, E_INVALIDARG},
                    ShapeRow{"columns from 1", VT_VARIANT, {{7, 1}, {2, 0}}, DISP_E_BADINDEX},
                    ShapeRow{"records from 1", VT_VARIANT, {{7, 0}, {2, 1}}, DISP_E_BADINDEX}),
    RowName);

TEST_F(Events, ThatIsNoArrayIsRefused)
{
    EXPECT_EQ(DuringACheck([](IDataParserEvents& events) {
                  return events.PutRecords(Variant::FromI4(7), 0);
              }),
              E_INVALIDARG);
}

TEST_F(Events, ThatReferToAnArrayAreRefused)
{
    const Variant batch = ArrayOf(VT_VARIANT, {{7, 0}, {1, 0}});
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
    SAFEARRAY* pArray = batch.parray;
    reference.byref = &pArray;
    EXPECT_EQ(
        DuringACheck([&](IDataParserEvents& events) { return events.PutRecords(reference, 1); }),
        E_INVALIDARG);
}

TEST_F(Events, OfACheckReachTheSinkOfTheCheck)
{
    const Variant batch = ArrayOf(VT_VARIANT, {{7, 0}, {1, 0}});
    for (LONG nColumn = 0; nColumn < 2; ++nColumn) {
        LONG at[] = {nColumn, 0};
        Variant cell = Variant::FromDate(nColumn == 0 ? 32874.0 : 0.5);
        ASSERT_EQ(SafeArrayPutElement(batch.parray, at, &cell), S_OK);
    }
    EXPECT_EQ(DuringACheck([&](IDataParserEvents& events) { return events.PutRecords(batch, 1); }),
              S_OK);
    ASSERT_EQ(sink->transcript.size(), 2u);
    EXPECT_EQ(sink->transcript[1], "data 1 rows");
    EXPECT_EQ(sink->rows[0], "2:-32662|3:43200000|0:|0:|0:|0:|0:");
    EXPECT_EQ(EventsOf(front.get())->PutRecords(batch, 1), E_NOINTERFACE); // the check is over
}

TEST_F(Events, OfACheckSkipBadLinesWithoutAWord)
{
    EXPECT_EQ(
        DuringACheck([](IDataParserEvents& events) { return events.OnError2(1, 1, nullptr); }),
        S_OK);
    EXPECT_EQ(EventsOf(front.get())->OnError2(1, 1, nullptr), S_FALSE);
}

TEST_F(Events, OfACheckWithinACheckReachTheInnerSinkFirst)
{
    const auto inner = NewSink();
    EXPECT_EQ(DuringACheck([&](IDataParserEvents& events) {
                  EXPECT_EQ(front->CheckConverterSettings(0, inner.get()), S_FALSE);
                  return events.OnError2(1, 1, nullptr);
              }),
              S_OK);
    EXPECT_EQ(inner->transcript.size(), 1u);
    EXPECT_EQ(sink->transcript, inner->transcript);
}

// ---- errors of a start

class EventsError : public Events, public testing::WithParamInterface<ShapeRow>
{
protected:
    // A number and two texts where the array has room for them.
    static Variant Described(const ShapeRow& row)
    {
        Variant description = ArrayOf(row.nKind, row.bounds);
        if (row.nKind != VT_VARIANT || row.bounds.size() != 1)
            return description;
        for (LONG i = 0; i < 3; ++i) {
            const Variant element = i == 0 ? Variant::FromI4(-1) : Variant::FromText(OLESTR("bad"));
            Variant copy = element;
            SafeArrayPutElement(description.parray, &i, &copy);
        }
        return description;
    }
};

TEST_P(EventsError, GoesToTheBoxIfItHasTheRightShape)
{
    EXPECT_EQ(EventsOfACopy()->OnError(Described(GetParam())), GetParam().hr);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, EventsError,
    testing::Values(
        ShapeRow{"three elements", VT_VARIANT, {{3, 0}}, E_UNEXPECTED}, // no window
        ShapeRow{"four elements from below", VT_VARIANT, {{4, -1}}, E_UNEXPECTED},
        ShapeRow{"two elements", VT_VARIANT, {{2, 0}}, E_INVALIDARG},
        ShapeRow{"no element", VT_VARIANT, {{0, 0}}, E_INVALIDARG},
        ShapeRow{"two elements from 1", VT_VARIANT, {{2, 1}}, E_INVALIDARG},
        ShapeRow{"one element from 2", VT_VARIANT, {{1, 2}}, E_INVALIDARG},
        ShapeRow{"two dimensions", VT_VARIANT, {{3, 0}, {3, 0}}, E_INVALIDARG},
        ShapeRow{"two dimensions without a cell", VT_VARIANT, {{3, 0}, {0, 0}}, E_INVALIDARG},
        ShapeRow{"bytes for elements", VT_UI1, {{3, 0}}, E_INVALIDARG}),
    RowName);

// The kind of the elements is the array's own, whatever the VARIANT around it says.
TEST_F(Events, ErrorWhoseElementsAreOfAnotherKindIsRefused)
{
    Variant bytes = ArrayOf(VT_UI1, {{3, 0}});
    bytes.vt = VT_ARRAY | VT_VARIANT;
    EXPECT_EQ(EventsOfACopy()->OnError(bytes), E_INVALIDARG);
    bytes.vt = VT_ARRAY | VT_UI1;
}

TEST_F(Events, ErrorThatIsNoArrayIsRefused)
{
    EXPECT_EQ(EventsOfACopy()->OnError(Variant::FromText(OLESTR("bad"))), E_INVALIDARG);
}

// ---- names

TEST_F(Events, UnknownResolutionHasANameToo)
{
    Bstr sName;
    EXPECT_EQ(EventsOf(front.get())->GetResolutionName(99, sName.put()), S_OK);
    EXPECT_EQ(Utf8(sName.view()), kUnknownResolution);
}

} // namespace
