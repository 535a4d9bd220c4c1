#include "tests/transcripts/Host.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>

#include "interfaces/Module.h"
#include "interfaces/NativeHost.h"
#include "platform/MessageBox.h"
#include "platform/threads/MessageWindow.h"

using namespace IQRL_TabulexConverter;

namespace transcripts {

namespace {

// Figures depend on the clock, except for the last count of records.
bool IsFigure(const std::string& call)
{
    constexpr const char* kFigures[] = {"percent ", "text 402 ", "text 404 ", "text 406 "};
    return std::ranges::any_of(kFigures, [&](const char* psz) { return call.starts_with(psz); });
}

std::string Hash(std::span<const std::string> rows)
{
    std::uint64_t n = 0xCBF29CE484222325;
    for (const std::string& row : rows)
        for (const char c : row + '\n')
            n = (n ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    char text[20];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(n));
    return text;
}

template <class Done>
bool PumpUntil(Done done)
{
    constexpr auto kPatience = std::chrono::seconds(60);
    const auto tLast = std::chrono::steady_clock::now() + kPatience;
    while (!done() && std::chrono::steady_clock::now() < tLast)
        PumpMessages(std::chrono::milliseconds(5));
    return done();
}

} // namespace

// ---- life

Host::Host(std::filesystem::path samples)
    : m_samples(std::move(samples)), m_converter(NewConvertor())
{
    TabulexSetLanguage(TABULEX_LANGUAGE_CHINESE);
    TabulexSetEncoding("windows-1252"); // whatever the environment's is
    TabulexSetProgressViews(&MakeView, this);
    SetWarningListener([this](LONG_PTR, string_view_t text) { Tell("warning " + Utf8(text)); });
}

Host::~Host()
{
    LetGo();
    m_sink.reset();
    if (!PumpUntil([] { return DllCanUnloadNow() == S_OK && !OwnsWindows(); }))
        Tell("something is left");
    TabulexSetProgressViews(nullptr, nullptr);
    SetWarningListener({});
}

com_ptr<IDataParser> Host::Parser()
{
    com_ptr<IDispatch> parser;
    m_converter->get_DataParser(parser.put());
    return parser.as<IDataParser>();
}

// ---- writing down

void Host::Tell(const std::string& line)
{
    TellView();
    std::string text = "  " + line + "\n";
    if (const auto nAt = m_sPath.empty() ? text.npos : text.find(m_sPath); nAt != text.npos)
        text.replace(nAt, m_sPath.size(), m_sName);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

// The calls on the view since the last line.
void Host::TellView()
{
    const ui_test::Calls calls = m_viewLog.Take();
    std::string told;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const bool bLastFigure = i + 1 < calls.size() && calls[i + 1] == "close";
        if (bLastFigure || !IsFigure(calls[i]))
            told += (told.empty() ? "view " : "; ") + calls[i];
    }
    if (!told.empty())
        Tell(told);
}

HRESULT Host::TellRows(std::size_t nBatch)
{
    constexpr std::size_t kFirst = 2;
    const std::vector<std::string> rows = std::exchange(m_sink->rows, {});
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (i < kFirst || i + 1 == rows.size())
            Tell("  row " + std::to_string(i) + " " + rows[i]);
    if (rows.size() > kFirst + 1)
        Tell("  hash of all " + Hash(rows));
    const HRESULT hr = onData ? onData(nBatch) : S_OK;
    if (hr != S_OK)
        Tell("  answer", hr);
    return hr;
}

// ---- the view

IProgressView* Host::MakeView(void* pHost)
{
    auto& host = *static_cast<Host*>(pHost);
    if (!host.bHasViews)
        return nullptr;
    auto* pView = new ui_test::FakeView(host.m_viewLog);
    pView->m_onAsk = [&host](ui_test::FakeView& view) { host.Press(view); };
    return pView;
}

void Host::Press(ui_test::FakeView& view)
{
    const ProgressControl press = presses.empty() ? ProgressSkip : presses.front();
    if (presses.size() > 1)
        presses.pop_front();
    Tell("press " + std::to_string(press));
    view.Press(press);
}

// ---- files

void Host::Open(const char* pszSample)
{
    const std::u8string path = (m_samples / pszSample).u8string();
    OpenPath(pszSample, Wide(std::string(path.begin(), path.end())));
}

void Host::NoteOpened(const std::string& sName)
{
    Bstr sPath;
    m_converter->get_FileName(sPath.put());
    m_sName = sName;
    m_sPath = Utf8(sPath.view());
}

void Host::OpenText(const std::string& content)
{
    m_text.emplace(content);
    OpenPath("text", m_text->Name());
}

void Host::OpenPath(const std::string& name, string_view_t path)
{
    m_sName = name;
    m_sPath = Utf8(path);
    Tell("open " + name, m_converter->put_FileName(Bstr(path).get()));
    AwaitCount();
}

// Waits until all lines are known: the last count of records is shown only then.
void Host::AwaitCount()
{
    const auto parser = Parser();
    PumpUntil([&] {
        ULONGLONG nCount = 0;
        VARIANT_BOOL bComplete = VARIANT_FALSE;
        return FAILED(parser->GetCount(&nCount, &bComplete)) || bComplete != VARIANT_FALSE;
    });
}

// ---- sessions

IDispatch* Host::NewSink()
{
    CreateObject(m_sink);
    m_sink->onEntry = [this](const std::string& entry) { Tell(entry); };
    m_sink->hrOnError = hrOnError;
    m_sink->onData = [this](std::size_t nBatch) { return TellRows(nBatch); };
    return m_sink.get();
}

// A session has ended when its windows are gone; some sessions end without a call on the
// sink.
void Host::HearToTheEnd()
{
    if (!PumpUntil([] { return !OwnsWindows(); }))
        Tell("no end");
    TellView();
}

void Host::Convert()
{
    Tell("DoConvert", m_converter->DoConvert(NewSink(), 0));
    HearToTheEnd();
}

void Host::ConvertPortion(ULONGLONG nStart, ULONGLONG nCount)
{
    const std::string call =
        "DoConvertPortion " + std::to_string(nStart) + " " + std::to_string(nCount);
    Tell(call, m_converter->DoConvertPortion(0, NewSink(), nStart, nCount));
    HearToTheEnd();
}

void Host::EnumSymbols()
{
    Tell("DoEnumSymbols", m_converter->DoEnumSymbols(NewSink()));
    HearToTheEnd();
}

void Host::CheckSettings()
{
    Tell("CheckConverterSettings", m_converter->CheckConverterSettings(0, NewSink()));
    HearToTheEnd();
}

HRESULT Host::Unadvise()
{
    const HRESULT hr = m_converter->Unadvise(m_sink.get());
    Tell("Unadvise", hr);
    return hr;
}

void Host::SwitchToClone()
{
    com_ptr<IDispatch> clone;
    Tell("Clone", m_converter->Clone(clone.put()));
    m_converter = clone.as<IqrlTabulexConvertor>();
}

} // namespace transcripts
