#include "src/front/DialogChoices.h"

namespace Hesperon::specifics {

SConvertDialogParams DialogParams(const ConvertorSettings& settings)
{
    SConvertDialogParams params;
    params.pFieldTemplates = &settings.m_arFieldTemplates.Rows();
    params.pResolutionTemplates = &settings.m_arResolutionTemplates.Rows();
    params.pTimeZoneTemplates = &settings.m_arTimeZoneTemplates.Rows();
    params.sFolder = settings.m_sFolder;
    params.sResolution = settings.m_arResolutionTemplates.Choice();
    params.sField = settings.m_arFieldTemplates.Choice();
    params.sTimeZone = settings.m_arTimeZoneTemplates.Choice();
    params.nResolutionSize = settings.m_nResolutionSize;
    return params;
}

void TakeChoices(const UILayer::CConvertDummyDialog& dialog, ConvertorSettings& settings)
{
    settings.m_arFieldTemplates.Choose(dialog.m_sField);
    settings.m_arResolutionTemplates.Choose(dialog.m_sResolution);
    settings.m_arTimeZoneTemplates.Choose(dialog.m_sTimeZone);
    settings.m_nResolutionSize = dialog.m_nResolutionSize;
    settings.m_sFolder = dialog.m_sFolder;
}

} // namespace Hesperon::specifics
