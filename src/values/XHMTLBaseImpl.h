// CXHMTLBaseImpl: a tolerant scanner of documents made of tags and text.
//
// It calls the derived class for each start tag, end tag and run of text, in the order
// in which they stand. Tags needn't match, attributes are read and dropped, comments
// and processing instructions pass unheard, and so does what stands in a script or
// style element. A '/' within a tag ends it: the character behind it is stepped over
// unseen. Entities aren't known.
//
// The names and texts that are told are parts of the scanned text, without the double
// quotes at both ends. Not synchronised.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

class CXHMTLBaseImpl
{
public:
    // Reads up to the end of the text or its first zero. False where that ends within a
    // tag, a comment or a raw element, or behind text that no tag follows; what stood
    // before has been told by then.
    bool Scan(string_view_t sText);

protected:
    CXHMTLBaseImpl() = default;
    CXHMTLBaseImpl(const CXHMTLBaseImpl&) = delete;
    CXHMTLBaseImpl& operator=(const CXHMTLBaseImpl&) = delete;
    ~CXHMTLBaseImpl() = default;

    virtual void OnStartElement(string_view_t sName) = 0;
    // Comes at once behind the start of an element that closes itself.
    virtual void OnEndElement(string_view_t sName) = 0;
    // Without the white space ahead of the text.
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

    struct STag
    {
        string_view_t sName; // as it stands
        TagClass eClass = TagClass::Other;
        bool bEnd = false;
        bool bSelfClosing = false;
    };

    static TagClass ClassOf(string_view_t sName);

    bool ScanCharacters();
    bool ScanElement();
    bool ScanTag(STag& tag);
    bool ReadName(STag& tag);
    bool SkipComment(const STag& tag);
    bool SkipAttributes(STag& tag);
    bool SkipAttribute();
    bool SkipRawContent(TagClass eClass);
    void Tell(const STag& tag);
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
