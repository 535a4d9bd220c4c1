#include "tests/support/WriteLink.h"

#include "platform/com_ptr.h"

#include <shlobj.h>

bool WriteLink(const std::filesystem::path& link, const std::filesystem::path& target)
{
    constexpr CLSID kShellLink = {0x00021401, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    com_ptr<IShellLinkW> pLink;
    com_ptr<IPersistFile> pFile;
    return SUCCEEDED(CoCreateInstance(kShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                      __uuidof(IShellLinkW), pLink.put_void())) &&
           SUCCEEDED(pLink->QueryInterface(__uuidof(IPersistFile), pFile.put_void())) &&
           SUCCEEDED(pLink->SetPath(target.c_str())) && SUCCEEDED(pFile->Save(link.c_str(), TRUE));
}
