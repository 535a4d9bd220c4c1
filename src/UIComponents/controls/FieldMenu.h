// FieldMenu: the menu of a column's heading, in which the user says what the column holds.
//
// Types stand in the order in which they are given. One with templates is a menu of its own:
// its templates, a line, and an item that opens the template editor. A line also stands between
// a type with templates and one without. Numbers are valid for fewer than 100 types, and fewer
// than 100 templates each.
//
// Used on one thread.
#pragma once

#include <vector>

#include "interfaces/IGridView.h"

namespace Hesperon::specifics {

// A type that a column can have.
struct FieldMenuType
{
    string_t sName; // internal
    string_t sText; // for the user
    std::vector<string_t> templates;
};

// What a column holds.
struct ColumnField
{
    string_t sName; // of its type
    string_t sTemplate;
};

// What an item of the menu stands for.
struct FieldChoice
{
    enum class Kind
    {
        Nothing,
        Plain,    // a type without templates
        Template, // a type and one of its templates
        Custom,   // a type and a template that the user is yet to write
    };

    Kind kind = Kind::Nothing;
    std::size_t nType = 0;
    std::size_t nTemplate = 0;
};

class FieldMenu
{
public:
    // The template of the column is checked, whatever its case.
    FieldMenu(std::vector<FieldMenuType> types, const ColumnField& column);
    FieldMenu(const FieldMenu&) = delete;
    FieldMenu& operator=(const FieldMenu&) = delete;

    // Lives as long as this object.
    IQRL_TabulexConverter::ViewMenu Items() const { return m_items; }
    // Nothing for a number that no item has.
    FieldChoice Choice(LONG nId) const;
    const FieldMenuType& Type(const FieldChoice& choice) const { return m_types[choice.nType]; }

private:
    using Item = IQRL_TabulexConverter::ViewMenuItem;

    std::vector<Item> TemplateItems(std::size_t nType, const ColumnField& column) const;

    const std::vector<FieldMenuType> m_types;
    const string_t m_sCustom;
    std::vector<std::vector<Item>> m_templateItems; // by type
    std::vector<Item> m_items;
};

// The text of an item. An address of at most 0xFFFF is the number of a string of the table; null
// gives an empty text.
string_t MenuText(const OLECHAR* pszText);

} // namespace Hesperon::specifics
