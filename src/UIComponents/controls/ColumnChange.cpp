#include "src/UIComponents/controls/ColumnChange.h"

#include "interfaces/IDialogViews.h"
#include "src/UIComponents/TemplateEditDlgNoHTML.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

namespace {

bool IsTextArray(const VARIANT& value)
{
    return value.vt == (VT_ARRAY | VT_BSTR);
}

// The parser infers layout and resolution around a new template, while it lives.
class SmartResolution
{
public:
    explicit SmartResolution(IRecordParser& parser) : m_parser(parser)
    {
        m_parser.put_SmartResolutionEnabled(VARIANT_TRUE);
    }
    ~SmartResolution() { m_parser.put_SmartResolutionEnabled(VARIANT_FALSE); }
    SmartResolution(const SmartResolution&) = delete;
    SmartResolution& operator=(const SmartResolution&) = delete;

private:
    IRecordParser& m_parser;
};

} // namespace

// ---- reading

HRESULT ColumnChange::ReadColumn()
{
    Bstr sTemplate, sName;
    HRESULT hr = m_pParser->GetFieldTemplate(sTemplate.put(), m_nColumn);
    if (SUCCEEDED(hr))
        hr = m_pParser->GetFieldName(sName.put(), m_nColumn);
    if (SUCCEEDED(hr))
        m_column = {sName.str(), sTemplate.str()};
    return hr;
}

// The last one in a parser's list isn't a template: it stands for the editor.
HRESULT ColumnChange::ReadTemplates(BSTR bsName, std::vector<string_t>& templates)
{
    Variant vTemplates;
    const HRESULT hr = m_pParser->GetTemplates(&vTemplates, bsName);
    if (FAILED(hr) || !IsTextArray(vTemplates))
        return hr;
    const LockedArray<BSTR> texts(vTemplates.parray);
    for (const BSTR text : texts.Elements())
        templates.emplace_back(TextOf(text));
    if (!templates.empty())
        templates.pop_back();
    return hr;
}

HRESULT ColumnChange::Read(std::vector<FieldMenuType>& types)
{
    Variant vNames, vTexts;
    HRESULT hr = ReadColumn();
    if (SUCCEEDED(hr))
        hr = m_pParser->GetTypeNames(&vNames);
    if (SUCCEEDED(hr))
        hr = m_pParser->GetTypeNamesLocalized(&vTexts);
    if (FAILED(hr))
        return hr;
    return IsTextArray(vNames) && IsTextArray(vTexts) ? ReadTypes(vNames, vTexts, types)
                                                      : E_UNEXPECTED;
}

// A type without a text for the user shows its name.
HRESULT ColumnChange::ReadTypes(const VARIANT& vNames, const VARIANT& vTexts,
                                std::vector<FieldMenuType>& types)
{
    const LockedArray<BSTR> names(vNames.parray), texts(vTexts.parray);
    for (std::size_t i = 0; i < names.Elements().size(); ++i) {
        FieldMenuType type{.sName = string_t(TextOf(names.At(i)))};
        if (i < texts.Elements().size())
            type.sText = MenuText(texts.At(i));
        if (type.sText.empty())
            type.sText = type.sName;
        const HRESULT hr = ReadTemplates(names.At(i), type.templates);
        if (FAILED(hr))
            return hr;
        types.push_back(std::move(type));
    }
    return S_OK;
}

HRESULT ColumnChange::ReadHeading(Bstr& sHeading)
{
    return m_pParser->GetFieldNameLocalized(sHeading.put(), m_nColumn);
}

// ---- changing

HRESULT ColumnChange::SetType(const FieldMenuType& type)
{
    return m_pParser->SetFieldName(m_nColumn, Bstr(type.sName).get());
}

bool ColumnChange::EditTemplate(const FieldMenuType& type, string_t& sTemplate)
{
    UILayer::CTemplateEditDlgNoHTML editor(type.sName, m_pParser, m_nColumn);
    if (type.sName == m_column.sName)
        editor.m_sTemplate = m_column.sTemplate;
    if (editor.DoModal() != kDialogOk)
        return false;
    sTemplate = editor.m_sTemplate;
    return true;
}

void ColumnChange::SetTemplate(const FieldMenuType& type, const string_t& sTemplate,
                               IDataChangeSink* pSink)
{
    const Bstr name(type.sName), text(sTemplate);
    const SmartResolution smart(*m_pParser.get());
    m_pParser->SetFieldName(m_nColumn, name.get());
    m_pParser->SetFieldTemplate(text.get(), m_nColumn);
    if (pSink)
        pSink->OnDataChanged();
}

} // namespace Hesperon::specifics
