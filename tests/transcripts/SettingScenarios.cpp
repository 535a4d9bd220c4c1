#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/NativeHost.h"
#include "tests/transcripts/Scenarios.h"

using namespace IQRL_TabulexConverter;

namespace transcripts {

namespace {

constexpr DATE kJanuary15 = 37636; // 2003
constexpr DATE kJanuary20 = 37641;

void PutDates(Host& host, DATE start, DATE end)
{
    host.Tell("start", host.Converter().put_StartDateTime(Variant::FromDate(start)));
    host.Tell("end", host.Converter().put_EndDateTime(Variant::FromDate(end)));
}

void PutSymbol(Host& host, const OLECHAR* pszName)
{
    host.Tell("symbol '" + Utf8(pszName) + "'",
              host.Converter().put_SymbolName(Bstr(pszName).get()));
}

void SetField(Host& host, LONG nField, LONG nId, const OLECHAR* pszForm)
{
    host.Tell("field " + std::to_string(nField) + " id " + std::to_string(nId),
              host.Converter().SetField(nField, nId, Bstr(pszForm).get()));
}

// ---- symbols

void Symbols(Host& host)
{
    host.Open("symbols.csv");
    host.EnumSymbols();
    for (const HRESULT hrAnswer : {S_FALSE, E_FAIL}) {
        host.onData = [=](std::size_t) { return hrAnswer; };
        host.EnumSymbols();
    }
}

void ChineseSymbols(Host& host)
{
    TabulexSetEncoding("gbk");
    host.Open("gbk-symbol.csv");
    host.EnumSymbols();
}

void NoSymbols(Host& host)
{
    host.Open("week.csv");
    host.EnumSymbols();
}

void OneSymbol(Host& host)
{
    host.Open("symbols.csv");
    for (const OLECHAR* pszName : {OLESTR("DEF"), OLESTR("def"), OLESTR("none"), OLESTR("")}) {
        PutSymbol(host, pszName);
        host.Convert();
    }
}

// ---- dates

void DateRange(Host& host)
{
    host.Open("day-no-header.csv");
    PutDates(host, kJanuary15, kJanuary20);
    host.DescribeLayout();
    host.Convert();
    PutDates(host, 1000, 60000);
    host.Convert();
}

void DateRangeOfADescendingFile(Host& host)
{
    host.Open("descending.csv");
    PutDates(host, kJanuary15, kJanuary20);
    host.Convert();
}

void DateRangeOfOneRecord(Host& host)
{
    host.Open("minute-5.csv");
    PutDates(host, 37634 + 10.0 / 24, 37634 + 10.0 / 24);
    host.Convert();
}

// ---- columns and values

void Multipliers(Host& host)
{
    host.Open("week.csv");
    for (const BYTE nCode : {BYTE(0x01), BYTE(0x43), BYTE(0x4D), BYTE(0x02), BYTE(0x07)}) {
        host.Tell("price code " + std::to_string(nCode),
                  host.Converter().put_PriceMultiplier(nCode));
        host.Tell("volume code " + std::to_string(nCode),
                  host.Converter().put_VolumeMultiplier(nCode));
        host.ConvertPortion(0, 3);
    }
}

void ColumnTakenOut(Host& host)
{
    host.Open("week.csv");
    SetField(host, 5, HostFieldUndefined, OLESTR(""));
    host.Tell("InitFieldsInfo", host.Converter().InitFieldsInfo());
    host.DescribeLayout();
    host.Convert();
}

// The session ends without a call, maybe before DoConvert returns; a view would be closed
// then or later.
void DateColumnTakenOut(Host& host)
{
    host.bHasViews = false;
    host.Open("week.csv");
    SetField(host, 0, HostFieldUndefined, OLESTR(""));
    host.Tell("InitFieldsInfo", host.Converter().InitFieldsInfo());
    host.Convert();
}

// Swaps days and months in dates where both can be a month.
void OtherDateTemplate(Host& host)
{
    host.Open("week.csv");
    SetField(host, 0, HostFieldDate, OLESTR("*y/*d/*m"));
    host.Tell("InitFieldsInfo", host.Converter().InitFieldsInfo());
    host.DescribeLayout();
    host.Convert();
}

void ResolutionsThatFitAndDont(Host& host)
{
    host.Open("minute-5.csv");
    for (const auto& [nSize, nId] : {std::pair(5, 2), {1, 2}, {1, 4}, {1, 1}, {7, 1}, {1, 77}})
        host.Tell("select " + std::to_string(nId) + " size " + std::to_string(nSize),
                  host.Converter().SelectResolution(nSize, nId));
    host.DescribeLayout();
}

// ---- what the check refuses, in both languages

void InBothLanguages(Host& host)
{
    for (const TabulexLanguage language : {TABULEX_LANGUAGE_CHINESE, TABULEX_LANGUAGE_ENGLISH}) {
        TabulexSetLanguage(language);
        host.CheckSettings();
        host.ConvertPortion(0, 3);
    }
}

void GoodSettings(Host& host)
{
    host.Open("week.csv");
    host.CheckSettings();
    host.Tell("without a sink", host.Converter().CheckConverterSettings(0, nullptr));
}

void NoResolution(Host& host)
{
    host.Open("week.csv");
    host.Tell("resolution", host.Converter().put_ResolutionTemplate(HostResolutionNone));
    InBothLanguages(host);
}

void NoSize(Host& host)
{
    host.Open("minute-5.csv");
    host.Tell("size", host.Converter().put_ResolutionSizeTemplate(0));
    InBothLanguages(host);
}

void LackedFields(Host& host)
{
    host.Open("minute-5.csv");
    SetField(host, 1, HostFieldUndefined, OLESTR(""));
    SetField(host, 4, HostFieldUndefined, OLESTR(""));
    InBothLanguages(host);
}

void FieldThatOccursTwice(Host& host)
{
    host.Open("week.csv");
    SetField(host, 5, HostFieldHigh, OLESTR("float"));
    InBothLanguages(host);
}

void SinkThatHearsNoErrors(Host& host)
{
    host.hrOnError = E_FAIL;
    NoResolution(host);
}

void BadLinesInEnglish(Host& host)
{
    TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
    host.Open("junk.csv");
    host.Convert();
}

std::string OneLine(const std::string& text)
{
    std::string line;
    for (const char c : text)
        line += c == '\r' ? "\\r" : c == '\n' ? "\\n" : std::string(1, c);
    return line;
}

void UsersSettings(Host& host)
{
    Bstr settings;
    host.Tell("get", host.Converter().get_Environment(settings.put()));
    host.Tell(OneLine(Utf8(settings.view())));
    host.Tell("put", host.Converter().put_Environment(settings.get()));
    host.Tell("put words", host.Converter().put_Environment(Bstr(OLESTR("words")).get()));
}

constexpr Scenario kSettingScenarios[] = {
    {"all symbols, the first one only, a failure at the first one", Symbols},
    {"Chinese symbols", ChineseSymbols},
    {"symbols of a file that has none", NoSymbols},
    {"one symbol's records", OneSymbol},
    {"a range of dates, and one that is too wide", DateRange},
    {"a range of dates of a descending file", DateRangeOfADescendingFile},
    {"a range of one record", DateRangeOfOneRecord},
    {"multipliers, the last code a wrong one", Multipliers},
    {"a column is taken out", ColumnTakenOut},
    {"the date's column is taken out", DateColumnTakenOut},
    {"another template of dates", OtherDateTemplate},
    {"resolutions that fit and don't", ResolutionsThatFitAndDont},
    {"good settings", GoodSettings},
    {"no resolution", NoResolution},
    {"no size", NoSize},
    {"lacked fields", LackedFields},
    {"a field that occurs twice", FieldThatOccursTwice},
    {"no resolution, and a sink that doesn't want to hear of it", SinkThatHearsNoErrors},
    {"bad lines in English", BadLinesInEnglish},
    {"the user's settings", UsersSettings},
};

} // namespace

std::span<const Scenario> SettingScenarios()
{
    return kSettingScenarios;
}

} // namespace transcripts
