// CXMLPropertyListImpl: reads the texts of known elements out of a document.
//
// It keeps a mask of the known elements that are open, one bit per element, and hands
// each text on with that mask. Names are matched with case. Unknown elements change
// nothing. One end tag closes an element, however often it was opened.
#pragma once

#include <cstdint>
#include <span>

#include "src/values/XHMTLBaseImpl.h"

namespace Hesperon::specifics {

class CXMLPropertyListImpl : private CXHMTLBaseImpl
{
public:
    // Begins with no element open. False if the document can't be read to its end; the
    // texts before the fault have been handed on.
    bool Read(string_view_t sText);

protected:
    // Bit n stands for name n; at most 32. The names aren't copied.
    explicit CXMLPropertyListImpl(std::span<const string_view_t> elements) : m_elements(elements) {}
    ~CXMLPropertyListImpl() = default;

    virtual void OnText(std::uint32_t uiOpen, string_view_t sText) = 0;

private:
    void OnStartElement(string_view_t sName) final { m_uiOpen |= BitOf(sName); }
    void OnEndElement(string_view_t sName) final { m_uiOpen &= ~BitOf(sName); }
    void OnCharacters(string_view_t sText) final { OnText(m_uiOpen, sText); }

    std::uint32_t BitOf(string_view_t sName) const; // 0 for an unknown name

    std::span<const string_view_t> m_elements;
    std::uint32_t m_uiOpen = 0;
};

} // namespace Hesperon::specifics
