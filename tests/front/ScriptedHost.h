// A host as a script: an object of the component with the usual lists, and a sink.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interfaces/NativeHost.h"
#include "platform/text/CodePage.h"
#include "platform/threads/MessageWindow.h"
#include "tests/front/Minutes.h"
#include "tests/front/NewConvertor.h"
#include "tests/front/ScriptedSink.h"
#include "tests/support/TempFile.h"
#include "tests/support/Waits.h"

class FrontFixture : public testing::Test
{
protected:
    using Strings = std::vector<std::string>;

    void SetUp() override
    {
        ASSERT_TRUE(SetAnsiCodePage(1252)); // whatever the locale of the environment is
        front = NewFront();
        sink = NewSink();
    }

    // The file's thread may release the last objects.
    void TearDown() override
    {
        sink.reset();
        front.reset();
        TabulexSetProgressViews(nullptr, nullptr);
        PumpUntil([] { return ModuleLockCount() == 0 && !OwnsWindows(); });
    }

    static com_ptr<IqrlTabulexConvertor> NewFront()
    {
        auto object = NewConvertor();
        EXPECT_TRUE(object);
        return object;
    }

    static com_ptr<ScriptedSink> NewSink()
    {
        com_ptr<ScriptedSink> result;
        EXPECT_EQ(CreateObject(result), S_OK);
        return result;
    }

    static HRESULT Open(IqrlTabulexConvertor& object, const TempFile& file)
    {
        return object.put_FileName(Bstr(file.Name()).get());
    }

    // Pumps until `done` answers true; a failure if that takes too long.
    template <class Done>
    static void PumpUntil(Done done)
    {
        const auto tLast = std::chrono::steady_clock::now() + kPatience;
        while (!done() && std::chrono::steady_clock::now() < tLast)
            PumpMessages(std::chrono::milliseconds(5));
        EXPECT_TRUE(done());
    }
    void PumpToTheEnd()
    {
        PumpUntil([this] { return sink->bEnded; });
    }

    com_ptr<IqrlTabulexConvertor> front;
    com_ptr<ScriptedSink> sink;
};

inline std::vector<std::string> DataEntries(std::size_t nFull, std::size_t nRest,
                                            const char* pszEnd)
{
    std::vector<std::string> entries(nFull, "data 1000 rows");
    if (nRest > 0)
        entries.push_back("data " + std::to_string(nRest) + " rows");
    entries.push_back(pszEnd);
    return entries;
}
