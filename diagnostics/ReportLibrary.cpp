#include "diagnostics/ReportLibrary.h"

#include "platform/DynamicLibrary.h"

namespace FaultmereUtil {
namespace {

constexpr char kStem[] = "FaultmereUtil3.0_x64";
constexpr char kClassId[] = "{CF3478AA-DD21-456C-98F2-5222D9B9CD75}";
constexpr char kEntry[] = "FM_InitObject";

DynamicLibrary FindOrLoad(const std::string& sFile)
{
    DynamicLibrary library = DynamicLibrary::FindLoaded(sFile);
    return library ? std::move(library) : DynamicLibrary::Load(sFile);
}

DynamicLibrary FindInstalled()
{
    DynamicLibrary library = FindOrLoad(LibraryFileName(kStem));
    if (library)
        return library;
    const std::string sRegistered = RegisteredServerPath(kClassId);
    return sRegistered.empty() ? DynamicLibrary() : DynamicLibrary::Load(sRegistered);
}

// The client keeps the root object until the process ends, and the library has its code.
HRESULT RootOf(DynamicLibrary library, com_ptr<IReportRoot>& root)
{
    const auto pfnInit = reinterpret_cast<FM_InitObject>(library.Find(kEntry));
    if (!pfnInit || FAILED(pfnInit(root.put())) || !root)
        return E_FAIL;
    library.KeepForever();
    return S_OK;
}

} // namespace

HRESULT LoadReportRoot(com_ptr<IReportRoot>& root)
{
    return RootOf(FindInstalled(), root);
}

HRESULT LoadReportRoot(const std::string& sFile, com_ptr<IReportRoot>& root)
{
    return RootOf(FindOrLoad(sFile), root);
}

} // namespace FaultmereUtil
