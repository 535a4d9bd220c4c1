#include <algorithm>

#include <unicode/ucol.h>

#include "platform/component.h"
#include "platform/text/UserLocale_posix.h"
#include "platform/values.h"

namespace {

// Comparing with a collator that nobody changes is safe from any thread; null
// where the system has no collation data. Never closed.
const UCollator* UserCollator()
{
    static const UCollator* const collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        const std::string name = LocaleName(EnvironmentLocale("LC_COLLATE"));
        UCollator* opened = ucol_open(name.c_str(), &status);
        return U_SUCCESS(status) ? opened : nullptr;
    }();
    return collator;
}

HRESULT ResultOf(int nOrder)
{
    if (nOrder == 0)
        return VARCMP_EQ;
    return nOrder < 0 ? VARCMP_LT : VARCMP_GT;
}

int Collate(string_view_t left, string_view_t right)
{
    const UCollator* collator = UserCollator();
    if (!collator)
        return left.compare(right);
    return ucol_strcoll(collator, left.data(), static_cast<int32_t>(left.size()), right.data(),
                        static_cast<int32_t>(right.size()));
}

} // namespace

// Locale 0 asks for a comparison of the bare units; any other is the user's.
extern "C" HRESULT VarBstrCmp(BSTR left, BSTR right, LCID locale, ULONG)
{
    const string_view_t a = TextOf(left);
    const string_view_t b = TextOf(right);
    if (a == b)
        return VARCMP_EQ;
    // The collator would take a text of zero units for an empty one.
    if (a.empty() || b.empty())
        return a.empty() ? VARCMP_LT : VARCMP_GT;
    return ResultOf(locale == 0 ? a.compare(b) : Collate(a, b));
}
