#include "examples/late_bound/ByName.h"
#include "tests/transcripts/Scenarios.h"

namespace transcripts {

namespace {

const OLECHAR* const kProperties[] = {
    OLESTR("FieldCount"),         OLESTR("FileName"),
    OLESTR("FieldTemplate"),      OLESTR("SymbolName"),
    OLESTR("ResolutionTemplate"), OLESTR("ResolutionSizeTemplate"),
    OLESTR("TimeZoneTemplate"),   OLESTR("StartDateTime"),
    OLESTR("EndDateTime"),        OLESTR("PriceMultiplier"),
    OLESTR("VolumeMultiplier"),   OLESTR("ValidResolution"),
    OLESTR("DataParser"),         OLESTR("resolutiontemplate"),
    OLESTR("get_FieldCount"),     OLESTR("Mode"),
    OLESTR("DoConvert"),          OLESTR("NoSuchName"),
};

// Objects have no text, and that of a date depends on the user's locale.
std::string ValueText(const Variant& value)
{
    if (value.vt == VT_DISPATCH || value.vt == VT_EMPTY)
        return "";
    Variant text;
    Variant number = value;
    if (number.vt == VT_DATE)
        number.vt = VT_R8;
    if (FAILED(VariantChangeType(&text, &number, 0, VT_BSTR)))
        return "?";
    return Utf8(TextOf(text.bstrVal));
}

void Properties(Host& host)
{
    host.Open("week.csv");
    const ByName converter(&host.Converter());
    for (const OLECHAR* pszName : kProperties) {
        Variant value;
        const HRESULT hr = converter.Get(pszName, value);
        host.Tell("get " + Utf8(pszName) + " kind " + std::to_string(value.vt) + " '" +
                      ValueText(value) + "'",
                  hr);
    }
}

// A value is a number, or a text where there is one.
struct Put
{
    const OLECHAR* pszName;
    const OLECHAR* pszText;
    LONG nValue;
};

const Put kPuts[] = {
    {OLESTR("Mode"), nullptr, 1},
    {OLESTR("Mode"), nullptr, 1},
    {OLESTR("Mode"), nullptr, 2},
    {OLESTR("Mode"), OLESTR("0"), 0},
    {OLESTR("Mode"), OLESTR("words"), 0},
    {OLESTR("FieldTemplate"), nullptr, 5},
    {OLESTR("TimeZoneTemplate"), nullptr, 5},
    {OLESTR("ResolutionTemplate"), nullptr, 4},
    {OLESTR("ResolutionTemplate"), nullptr, 77},
    {OLESTR("ResolutionSizeTemplate"), OLESTR("7"), 0},
    {OLESTR("PriceMultiplier"), nullptr, 0x45},
    {OLESTR("PriceMultiplier"), nullptr, 7},
    {OLESTR("PriceMultiplier"), nullptr, 300},
    {OLESTR("PriceMultiplier"), nullptr, -1},
    {OLESTR("SymbolName"), nullptr, 12},
    {OLESTR("Environment"), OLESTR("words"), 0},
    {OLESTR("FieldCount"), nullptr, 1},
    {OLESTR("DataParser"), nullptr, 1},
    {OLESTR("NoSuchName"), nullptr, 1},
};

void Puts(Host& host)
{
    host.Open("day-no-header.csv");
    const ByName converter(&host.Converter());
    for (const Put& put : kPuts) {
        const HRESULT hr = put.pszText ? converter.Put(put.pszName, Bstr(put.pszText).get())
                                       : converter.Put(put.pszName, put.nValue);
        host.Tell("put " + Utf8(put.pszName) + " " +
                      (put.pszText ? "'" + Utf8(put.pszText) + "'" : std::to_string(put.nValue)),
                  hr);
    }
}

void Calls(Host& host)
{
    host.Open("week.csv");
    const ByName converter(&host.Converter());
    LONG nId = -1;
    Bstr form;
    const Bstr name(OLESTR("Mine"));
    IDispatch* const none = nullptr;
    const auto call = [&](const char* pszWhat, const OLECHAR* pszName, auto... arguments) {
        host.Tell(pszWhat, converter.Call(pszName, arguments...));
    };
    call("InitFieldsInfo", OLESTR("InitFieldsInfo"));
    call("InitFieldsInfo with one", OLESTR("InitFieldsInfo"), LONG{1});
    call("AddFieldTemplate", OLESTR("AddFieldTemplate"), LONG{7}, name.get());
    call("AddFieldTemplate again", OLESTR("AddFieldTemplate"), LONG{7}, name.get());
    call("AddFieldTemplate with one", OLESTR("AddFieldTemplate"), LONG{7});
    call("AddFieldTemplate in the wrong order", OLESTR("AddFieldTemplate"), name.get(), LONG{7});
    call("GetField", OLESTR("GetField"), LONG{1}, &nId, form.put());
    host.Tell("gives " + std::to_string(nId) + " '" + Utf8(form.view()) + "'");
    call("GetField of none", OLESTR("GetField"), LONG{99}, &nId, form.put());
    call("GetField without places", OLESTR("GetField"), LONG{1}, LONG{2}, name.get());
    call("DoConvert without a sink", OLESTR("DoConvert"), none, LONG{0});
    call("DoConvert with one that is none", OLESTR("DoConvert"),
         static_cast<IDispatch*>(&host.Converter()), LONG{0});
    call("DoConvert with a number", OLESTR("DoConvert"), LONG{7}, LONG{0});
    call("DoConvert with a text", OLESTR("DoConvert"), name.get(), LONG{0});
    call("Unadvise of none", OLESTR("Unadvise"), none);
    call("a name that isn't there", OLESTR("NoSuchName"));
    call("a property as a call", OLESTR("FieldCount"));
}

constexpr Scenario kDispatchScenarios[] = {
    {"properties", Properties},
    {"puts, right and wrong", Puts},
    {"calls, right and wrong", Calls},
};

} // namespace

std::span<const Scenario> DispatchScenarios()
{
    return kDispatchScenarios;
}

} // namespace transcripts
