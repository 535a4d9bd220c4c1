// What a host's module of texts must have, too.

#include <gtest/gtest.h>

#include "Simples/interface/ResourceStrings.h"
#include "src/UIComponents/windows/ActivationContext.h"
#include "src/UIComponents/windows/DialogResources.h"

using namespace Hesperon::specifics::UILayer;
using namespace IQRL_TabulexConverter;

namespace {

enum ResourceType
{
    TypeBitmap = 2,
    TypeMenu = 4,
    TypeDialog = 5,
    TypeManifest = 24,
    TypeToolbar = 241,
};

bool Has(Language language, unsigned nId, ResourceType type)
{
    const auto hModule = reinterpret_cast<HMODULE>(OwnStrings(language));
    return FindResourceW(hModule, MAKEINTRESOURCEW(nId), MAKEINTRESOURCEW(type)) != nullptr;
}

} // namespace

TEST(DialogResources, BothLanguagesHaveEverything)
{
    for (const Language language : {Language::Chinese, Language::English}) {
        SCOPED_TRACE(static_cast<int>(language));
        for (const DialogId dialog :
             {DialogImport, DialogFolder, DialogContent, DialogSettings, DialogDecode,
              DialogTemplate, DialogDelimiters, DialogProgress})
            EXPECT_TRUE(Has(language, dialog, TypeDialog)) << dialog;
        EXPECT_TRUE(Has(language, kFolderMenuId, TypeMenu));
        EXPECT_TRUE(Has(language, kFolderToolbarId, TypeToolbar));
        EXPECT_TRUE(Has(language, kFolderToolbarId, TypeBitmap));
        EXPECT_TRUE(Has(language, kManifestId, TypeManifest));
    }
}

TEST(DialogResources, TheTwoLanguagesAreTwoModules)
{
    EXPECT_NE(OwnStrings(Language::Chinese), OwnStrings(Language::English));
}
