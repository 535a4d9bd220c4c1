// The compiled matcher and a plain walk over the same rules must agree. An input is a byte
// for the type, the template up to a zero byte, and the text.

#include <cmath>
#include <string>

#include "fuzz/Targets.h"
#include "platform/values.h"
#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/IQDParseImpl.h"
#include "src/parsing/templates/TextTests.h"
#include "tests/parsing/PlainTemplate.h"

using namespace Hesperon::specifics;

namespace {

string_t Widen(const std::string& s)
{
    return string_t(s.begin(), s.end());
}

bool SameValue(CDataField& field, const PlainField& plain)
{
    Variant value;
    if (FAILED(field.GetValue(&value)))
        return !plain.HasValue();
    return plain.HasValue() && std::abs(value.date - plain.Value()) < 1e-9;
}

} // namespace

void fuzz::MatchTemplate(const std::uint8_t* data, std::size_t nSize)
{
    if (nSize < 2)
        return;
    const unsigned uiType = data[0] % 2 ? TypeDate : TypeTime;
    std::string sInput;
    for (std::size_t i = 1; i < nSize; ++i)
        sInput += static_cast<char>(data[i] & 0x7F);
    const std::size_t nCut = std::min(sInput.find('\0'), sInput.size());
    const string_t sTemplate = Widen(sInput.substr(0, std::min(nCut, kMaxText)));
    std::string sRest = nCut < sInput.size() ? sInput.substr(nCut + 1) : std::string();
    std::erase(sRest, '\0');
    const string_t sText = Widen(sRest.substr(0, kMaxText));

    CDataField field;
    field.SetTypeAndTemplate(uiType, sTemplate);
    field.ParseField(sText);
    PlainField plain(uiType, string_t(field.GetTemplate()));
    const bool bPlain = plain.Parse(sText);
    fuzz::Require(field.IsValid() == bPlain && (!bPlain || SameValue(field, plain)),
                  "matcher and walk agree");
}
