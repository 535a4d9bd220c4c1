// The scanner and a plain one call the same, and what was read can be written and read again.
// An input is a text; its bytes from 0x80 on stand for blanks and letters far from ASCII.

#include <cstdint>
#include <string>

#include "fuzz/Targets.h"
#include "src/parsing/EnvironmentDocument.h"
#include "tests/values/Heard.h"

using namespace Hesperon::specifics;
using fuzz::Require;

namespace {

string_t TextOfBytes(const std::uint8_t* data, std::size_t nSize)
{
    constexpr OLECHAR kFar = 0x1F80;
    string_t s;
    for (std::size_t i = 0; i < nSize; ++i)
        s += static_cast<OLECHAR>(data[i] < 0x80 ? data[i] : data[i] + kFar);
    return s;
}

TypeTable Lists()
{
    TypeTable types;
    types.emplace(TypeDate, CDataType(TypeDate));
    types.emplace(TypeTime, CDataType(TypeTime));
    return types;
}

} // namespace

void fuzz::ReadDocument(const std::uint8_t* data, std::size_t nSize)
{
    const string_t sDocument = TextOfBytes(data, nSize);
    Require(Heard(sDocument) == PlainlyHeard(sDocument), "scanner and plain scanner disagree");

    // A text that was read holds no '<', so it comes back.
    TypeTable types = Lists();
    string_t sFolder;
    ReadTemplates(sDocument, types);
    ReadFolder(sDocument, sFolder);
    const string_t sTemplates = WriteTemplates(types);
    const string_t sWritten = WriteEnvironment(sFolder, sTemplates);
    TypeTable again = Lists();
    string_t sFolderAgain;
    Require(ReadTemplates(sWritten, again), "the written text can't be read");
    Require(WriteTemplates(again) == sTemplates, "templates change on the way");
    Require(ReadFolder(sWritten, sFolderAgain), "the written text can't be read");
    Require(sFolderAgain == sFolder, "the folder changes on the way");
}
