// A host that follows a script. It writes down what it does, what it is answered and every
// call that it gets, in that order.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "interfaces/IDataParser.h"
#include "tests/front/NewConvertor.h"
#include "tests/front/ScriptedSink.h"
#include "tests/support/TempFile.h"
#include "tests/transcripts/Codes.h"
#include "tests/ui/FakeView.h"

namespace transcripts {

class Host
{
public:
    explicit Host(std::filesystem::path samples);
    ~Host(); // writes down whether something is left
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // ---- answers

    std::function<HRESULT(std::size_t nBatch)> onData; // to a batch or symbol; S_OK if empty
    std::deque<IQRL_TabulexConverter::ProgressControl>
        presses;              // one per question; the last one repeats
    HRESULT hrOnError = S_OK; // to a fault of the settings
    bool bHasViews = true;

    // ---- steps; sessions are heard to their end

    void Open(const char* pszSample);
    void OpenText(const std::string& content);
    // The converter has opened a sample by other means; its path isn't written down.
    void NoteOpened(const std::string& sName);
    void DescribeLayout();
    void Convert();
    void ConvertPortion(ULONGLONG nStart, ULONGLONG nCount);
    void EnumSymbols();
    void CheckSettings();
    HRESULT Unadvise();
    void SwitchToClone();
    void LetGo() { m_converter.reset(); }

    void Tell(const std::string& line);
    void Tell(const std::string& call, HRESULT hr) { Tell(call + " " + CodeName(hr)); }

    const std::filesystem::path& Samples() const { return m_samples; }
    IqrlTabulexConvertor& Converter() { return *m_converter.get(); }
    com_ptr<IQRL_TabulexConverter::IDataParser> Parser();

private:
    static IQRL_TabulexConverter::IProgressView* MakeView(void* pHost);
    IDispatch* NewSink();
    void HearToTheEnd();
    void OpenPath(const std::string& name, string_view_t path);
    void AwaitCount();
    void Press(ui_test::FakeView& view);
    void TellView();
    HRESULT TellRows(std::size_t nBatch);
    void DescribeFields();
    void DescribeResolution();
    void DescribeParser();

    const std::filesystem::path m_samples;
    std::optional<TempFile> m_text;
    std::string m_sName, m_sPath; // of the open file
    com_ptr<IqrlTabulexConvertor> m_converter;
    com_ptr<ScriptedSink> m_sink;
    ui_test::ViewLog m_viewLog;
};

} // namespace transcripts
