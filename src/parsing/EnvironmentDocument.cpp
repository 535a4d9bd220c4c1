// Writing is pasting: the values stand between fixed texts. Reading is left to the scanner of
// documents, which gives each text with a mask of the elements around it, one bit per row of
// kElements. A reader knows the elements of its own part, and takes a text where the mask is
// exactly the one that it looks for.

#include "src/parsing/EnvironmentDocument.h"

#include "diagnostics/FaultmereClient.h"
#include "src/values/CaseFold.h"
#include "src/values/XMLPropertyListImpl.h"

namespace Hesperon::specifics {

namespace {

constexpr unsigned kListedTypes[] = {TypeDate, TypeTime};

constexpr string_view_t kAheadOfFolder = OLESTR("<ENVIRONMENT>\r\n"
                                                "<TABULEXCONVERTOR_ENVIRONMENT>\r\n"
                                                "<PATH>\"");
// Nobody keeps a rectangle or reads it; its place in the text is part of the format.
constexpr string_view_t kBehindFolder =
    OLESTR("\"</PATH>\r\n"
           "<RECT><LEFT>0</LEFT><TOP>0</TOP><RIGHT>0</RIGHT><BOTTOM>0</BOTTOM></RECT>\r\n"
           "</TABULEXCONVERTOR_ENVIRONMENT>\r\n"
           "\r\n");
constexpr string_view_t kBehindTemplates = OLESTR("\r\n"
                                                  "</ENVIRONMENT>\r\n");

void Append(string_t& s, std::initializer_list<string_view_t> parts)
{
    for (string_view_t sPart : parts)
        s += sPart;
}

// Adds each template to the list of the type that was named before it.
class TemplateReader final : public CXMLPropertyListImpl
{
public:
    explicit TemplateReader(TypeTable& types) : CXMLPropertyListImpl(kElements), m_types(types) {}

private:
    static constexpr string_view_t kElements[] = {
        OLESTR("RECORD_PARSER_ENVIRONMENT"), OLESTR("TYPE"), OLESTR("NAME"), OLESTR("TEMPLATE")};
    static constexpr std::uint32_t kInName = 0b0111;
    static constexpr std::uint32_t kInTemplate = 0b1011;

    void OnText(std::uint32_t uiOpen, string_view_t sText) override
    {
        if (uiOpen == kInName)
            m_sType = sText;
        else if (uiOpen == kInTemplate)
            AddTemplate(sText);
    }

    void AddTemplate(string_view_t sTemplate)
    {
        for (unsigned uiType : kListedTypes)
            if (EqualIgnoringCase(m_sType, TypeName(uiType)))
                return m_types.at(uiType).AddTemplate(sTemplate, false);
        FaultmereUtil::Assert(false, "0");
    }

    TypeTable& m_types;
    string_view_t m_sType;
};

// Of the front object's part only the folder is used.
class FolderReader final : public CXMLPropertyListImpl
{
public:
    explicit FolderReader(string_t& sFolder) : CXMLPropertyListImpl(kElements), m_sFolder(sFolder)
    {}

private:
    static constexpr string_view_t kElements[] = {
        OLESTR("TABULEXCONVERTOR_ENVIRONMENT"),
        OLESTR("PATH"),
        OLESTR("RECT"),
        OLESTR("LEFT"),
        OLESTR("TOP"),
        OLESTR("RIGHT"),
        OLESTR("BOTTOM"),
    };
    static constexpr std::uint32_t kInPath = 0b11;

    void OnText(std::uint32_t uiOpen, string_view_t sText) override
    {
        if (uiOpen == kInPath)
            m_sFolder = sText;
    }

    string_t& m_sFolder;
};

} // namespace

string_t WriteTemplates(const TypeTable& types)
{
    string_t s = OLESTR("<RECORD_PARSER_ENVIRONMENT>");
    for (unsigned uiType : kListedTypes) {
        Append(s, {OLESTR("<TYPE><NAME>\""), TypeName(uiType), OLESTR("\"</NAME>")});
        for (const tagTEMPLATE& entry : types.at(uiType).Templates())
            Append(s, {OLESTR("<TEMPLATE>\""), entry.szTemplate, OLESTR("\"</TEMPLATE>")});
        s += OLESTR("</TYPE>");
    }
    return s += OLESTR("</RECORD_PARSER_ENVIRONMENT>");
}

bool ReadTemplates(string_view_t sText, TypeTable& types)
{
    return TemplateReader(types).Read(sText);
}

string_t WriteEnvironment(string_view_t sFolder, string_view_t sTemplates)
{
    string_t s;
    Append(s, {kAheadOfFolder, sFolder, kBehindFolder, sTemplates, kBehindTemplates});
    return s;
}

bool ReadFolder(string_view_t sText, string_t& sFolder)
{
    return FolderReader(sFolder).Read(sText);
}

} // namespace Hesperon::specifics
