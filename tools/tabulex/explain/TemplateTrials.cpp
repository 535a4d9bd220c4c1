// Its file has no divider, so the text of a cell is a record of one column, blanks and commas
// included. Type and template are set only where they differ from the last ones, as a column is
// mostly tried text after text. Of templates that read equally many texts the one that the
// component tries first stays first.

#include "tools/tabulex/explain/TemplateTrials.h"

#include <algorithm>

#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

constexpr std::string_view kSingleColumn = "10\n";

} // namespace

TemplateTrials::TemplateTrials(const Host& host)
    : m_asked(host), m_file(kSingleColumn), m_host(host.Offers())
{
    m_host.Open(m_file.Path());
    m_host.Records().put_FieldDividers(0);
}

// The last entry stands for one that the user types.
std::vector<std::string> TemplateTrials::TemplatesOf(unsigned uiType) const
{
    Variant names;
    m_asked.Records().GetTemplates(names.put(), Bstr(FromUtf8(m_asked.TypeNames()[uiType])).get());
    auto templates = TextsOf(names);
    if (!templates.empty())
        templates.pop_back();
    return templates;
}

bool TemplateTrials::Reads(unsigned uiType, const std::string& sTemplate, const std::string& text)
{
    IRecordParser& records = m_host.Records();
    if (uiType != m_uiType) {
        records.SetFieldType(0, static_cast<LONG>(uiType));
        m_sTemplate.clear();
        m_uiType = uiType;
    }
    if ((uiType == TypeDate || uiType == TypeTime) && sTemplate != m_sTemplate) {
        records.SetFieldTemplate(Bstr(FromUtf8(sTemplate)).get(), 0);
        m_sTemplate = sTemplate;
    }
    Variant value;
    return !text.empty() && SUCCEEDED(records.Parse(Bstr(FromUtf8(text)).get())) &&
           records.GetFieldValue(value.put(), 0) == S_OK;
}

TemplateFit TemplateTrials::FitOf(unsigned uiType, const std::string& sTemplate,
                                  const std::vector<std::string>& texts)
{
    TemplateFit fit{sTemplate};
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (Reads(uiType, sTemplate, texts[i]))
            ++fit.nRead;
        else
            fit.nFirstFailure = std::min(fit.nFirstFailure, i);
    return fit;
}

std::vector<TemplateFit> TemplateTrials::FitsOf(unsigned uiType,
                                                const std::vector<std::string>& texts)
{
    std::vector<TemplateFit> fits;
    for (const std::string& sTemplate : TemplatesOf(uiType))
        fits.push_back(FitOf(uiType, sTemplate, texts));
    std::ranges::stable_sort(fits, std::ranges::greater(), &TemplateFit::nRead);
    return fits;
}

} // namespace tabulex
