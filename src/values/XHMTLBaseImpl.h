// CXHMTLBaseImpl: a tolerant scanner of documents made of tags and text.
//
// It calls the derived class for each start tag, end tag and run of text, in the order
// in which they stand. Tags needn't match. Attributes, comments, processing instructions
// and the content of script and style elements are skipped. A '/' within a tag ends it,
// and the character after it is skipped unseen. Entities aren't known.
//
// Names and texts are parts of the scanned text, without the double quotes at both ends.
// Not synchronised.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

class CXHMTLBaseImpl
{
public:
    // Reads up to the end of the text or its first zero. False if that end is inside a
    // tag, a comment, or the content of script or style, or if no tag follows the last
    // run of text. What stands before has been reported by then.
    bool Scan(string_view_t sText);

protected:
    CXHMTLBaseImpl() = default;
    CXHMTLBaseImpl(const CXHMTLBaseImpl&) = delete;
    CXHMTLBaseImpl& operator=(const CXHMTLBaseImpl&) = delete;
    ~CXHMTLBaseImpl() = default;

    virtual void OnStartElement(string_view_t sName) = 0;
    // Called at once after the start of an element that closes itself.
    virtual void OnEndElement(string_view_t sName) = 0;
    // Without the white space in front of the text.
    virtual void OnCharacters(string_view_t sText) = 0;

private:
    enum class TagClass
    {
        Other,
        Script,
        Style,
        Comment,
        Instruction
    };

    struct Tag
    {
        string_view_t sName; // as it stands
        TagClass eClass = TagClass::Other;
        bool bEnd = false;
        bool bSelfClosing = false;
    };

    static TagClass ClassOf(string_view_t sName);

    bool ScanCharacters();
    bool ScanElement();
    bool ScanTag(Tag& tag);
    bool ReadName(Tag& tag);
    bool SkipComment(const Tag& tag);
    bool SkipAttributes(Tag& tag);
    bool SkipAttribute();
    bool SkipRawContent(TagClass eClass);
    void Report(const Tag& tag);
    bool StepOverTagEnd();

    bool AtEnd() const { return m_nPos == m_sText.size(); }
    OLECHAR Current() const { return m_sText[m_nPos]; } // REQUIRES: !AtEnd()
    bool Take(OLECHAR c);
    void SkipSpace();
    bool SkipTo(string_view_t sWhat, std::size_t nFrom);
    string_view_t TakeUntilSpaceOr(OLECHAR c);

    string_view_t m_sText;
    std::size_t m_nPos = 0;
};

} // namespace Hesperon::specifics
