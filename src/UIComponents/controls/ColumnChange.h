// ColumnChange: what the menu of a heading does to a column of a record parser.
//
// Used on the dialog's thread.
#pragma once

#include "interfaces/IDataChangeSink.h"
#include "interfaces/IRecordParser.h"
#include "platform/com_ptr.h"
#include "platform/values.h"
#include "src/UIComponents/controls/FieldMenu.h"

namespace Hesperon::specifics {

class ColumnChange
{
public:
    ColumnChange(com_ptr<IQRL_TabulexConverter::IRecordParser> pParser, ULONG nColumn)
        : m_pParser(std::move(pParser)), m_nColumn(nColumn)
    {}

    // Reads the column, and the types that the parser's resolution admits. After a failure
    // there is no menu.
    HRESULT Read(std::vector<FieldMenuType>& types);
    const ColumnField& Column() const { return m_column; }

    // A type without templates. The parser reads its dates anew; nobody is told.
    HRESULT SetType(const FieldMenuType& type);
    // Has the user write a template of a type. False if the editor was cancelled.
    bool EditTemplate(const FieldMenuType& type, string_t& sTemplate);
    // The parser finds its layout anew around the column, and the sink, which may be null, is
    // told.
    void SetTemplate(const FieldMenuType& type, const string_t& sTemplate,
                     IQRL_TabulexConverter::IDataChangeSink* pSink);

    // The column's heading.
    HRESULT ReadHeading(Bstr& sHeading);

private:
    HRESULT ReadColumn();
    HRESULT ReadTypes(const VARIANT& vNames, const VARIANT& vTexts,
                      std::vector<FieldMenuType>& types);
    HRESULT ReadTemplates(BSTR bsName, std::vector<string_t>& templates);

    const com_ptr<IQRL_TabulexConverter::IRecordParser> m_pParser;
    const ULONG m_nColumn;
    ColumnField m_column;
};

} // namespace Hesperon::specifics
