#include <cstdio>
#include <exception>

#include "platform/MessageBox.h"
#include "platform/text/CodePage.h"

void ShowSystemWarning(LONG_PTR, string_view_t text)
{
    constexpr UINT kUtf8 = 65001;
    try {
        const std::string line = EncodeText(kUtf8, text) + '\n';
        std::fwrite(line.data(), 1, line.size(), stderr);
    } catch (const std::exception&) {
        // A warning that can't be shown is no reason to fail.
    }
}
