// The text is read from left to right, tag by tag: white space, then either a run of text up
// to the next '<', or a tag. A tag's name ends at white space or '>', and decides what
// follows: a comment is skipped to its "-->", attributes are read and dropped, and the
// content of script and style is skipped to the end tag of the same kind.

#include "src/values/XHMTLBaseImpl.h"

#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

constexpr string_view_t kCommentStart = OLESTR("!--");
constexpr string_view_t kCommentEnd = OLESTR("-->");

// The same on every system, whatever its locale.
bool IsSpace(OLECHAR c)
{
    if (c < 0x80)
        return c == 0x20 || (c >= 0x09 && c <= 0x0D);
    constexpr string_view_t kOthers = OLESTR("\x85\xA0\x1680\x2028\x2029\x202F\x205F\x3000");
    return (c >= 0x2000 && c <= 0x200A) || kOthers.find(c) != string_view_t::npos;
}

string_view_t WithoutQuotes(string_view_t sText)
{
    const std::size_t nFirst = sText.find_first_not_of(OLECHAR('"'));
    if (nFirst == string_view_t::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(OLECHAR('"')) - nFirst + 1);
}

} // namespace

CXHMTLBaseImpl::TagClass CXHMTLBaseImpl::ClassOf(string_view_t sName)
{
    if (EqualIgnoringCase(sName, OLESTR("script")))
        return TagClass::Script;
    if (EqualIgnoringCase(sName, OLESTR("style")))
        return TagClass::Style;
    if (sName.starts_with(kCommentStart))
        return TagClass::Comment;
    return EqualIgnoringCase(sName, OLESTR("?xml")) ? TagClass::Instruction : TagClass::Other;
}

bool CXHMTLBaseImpl::Scan(string_view_t sText)
{
    m_sText = sText.substr(0, sText.find(OLECHAR(0)));
    m_nPos = 0;
    for (SkipSpace(); !AtEnd(); SkipSpace())
        if (!(Current() == '<' ? ScanElement() : ScanCharacters()))
            return false;
    return true;
}

bool CXHMTLBaseImpl::ScanCharacters()
{
    const std::size_t nStart = m_nPos;
    if (!SkipTo(OLESTR("<"), nStart))
        return false;
    OnCharacters(WithoutQuotes(m_sText.substr(nStart, m_nPos - nStart)));
    return true;
}

bool CXHMTLBaseImpl::ScanElement()
{
    ++m_nPos;
    Tag tag;
    if (!ScanTag(tag))
        return false;
    Report(tag);
    if (!StepOverTagEnd())
        return false;
    const bool bRaw = tag.eClass == TagClass::Script || tag.eClass == TagClass::Style;
    return !bRaw || tag.bEnd || tag.bSelfClosing || SkipRawContent(tag.eClass);
}

// Leaves the scan on the last character of the tag, as far as it is well formed.
bool CXHMTLBaseImpl::ScanTag(Tag& tag)
{
    if (!ReadName(tag))
        return false;
    if (Current() == '>' && tag.sName.ends_with(OLECHAR('/'))) {
        tag.bSelfClosing = true;
        tag.sName.remove_suffix(1);
    }
    if (tag.sName.empty())
        return false;
    tag.eClass = ClassOf(tag.sName);
    if (tag.eClass == TagClass::Comment && !tag.bEnd)
        return SkipComment(tag);
    return SkipAttributes(tag);
}

bool CXHMTLBaseImpl::ReadName(Tag& tag)
{
    tag.bEnd = Take('/');
    SkipSpace();
    tag.sName = TakeUntilSpaceOr('>');
    return !AtEnd();
}

// A comment may end within what was taken for its name, as in <!--x-->.
bool CXHMTLBaseImpl::SkipComment(const Tag& tag)
{
    const std::size_t nName = static_cast<std::size_t>(tag.sName.data() - m_sText.data());
    if (!SkipTo(kCommentEnd, nName + kCommentStart.size()))
        return false;
    m_nPos += kCommentEnd.size() - 1;
    return true;
}

bool CXHMTLBaseImpl::SkipAttributes(Tag& tag)
{
    for (;;) {
        SkipSpace();
        if (AtEnd())
            return false;
        if (Current() == '>')
            return true;
        if (Take('/')) {
            tag.bSelfClosing = true;
            return true;
        }
        if (tag.eClass == TagClass::Instruction && Take('?'))
            return true;
        if (!SkipAttribute())
            return false;
    }
}

bool CXHMTLBaseImpl::SkipAttribute()
{
    TakeUntilSpaceOr('=');
    SkipSpace();
    if (!Take('='))
        return true;
    SkipSpace();
    if (AtEnd())
        return false;
    const OLECHAR quote = Current();
    if (quote != '"' && quote != '\'') {
        TakeUntilSpaceOr('>');
        return true;
    }
    if (!SkipTo(string_view_t(&quote, 1), m_nPos + 1))
        return false;
    ++m_nPos;
    return true;
}

// Tags within the content are passed over by their names alone: what looks like one in a script has
// no attributes that could be read.
bool CXHMTLBaseImpl::SkipRawContent(TagClass eClass)
{
    while (SkipTo(OLESTR("<"), m_nPos)) {
        ++m_nPos;
        Tag tag;
        if (!ReadName(tag))
            return false;
        if (!tag.bEnd || ClassOf(tag.sName) != eClass)
            continue;
        if (!SkipAttributes(tag))
            return false;
        Report(tag);
        return StepOverTagEnd();
    }
    return false;
}

void CXHMTLBaseImpl::Report(const Tag& tag)
{
    if (tag.eClass == TagClass::Comment)
        return;
    const string_view_t sName = WithoutQuotes(tag.sName);
    if (tag.bEnd) {
        OnEndElement(sName);
        return;
    }
    if (tag.eClass == TagClass::Instruction)
        return;
    OnStartElement(sName);
    if (tag.bSelfClosing)
        OnEndElement(sName);
}

bool CXHMTLBaseImpl::StepOverTagEnd()
{
    if (AtEnd())
        return false;
    ++m_nPos;
    return true;
}

bool CXHMTLBaseImpl::Take(OLECHAR c)
{
    if (AtEnd() || Current() != c)
        return false;
    ++m_nPos;
    return true;
}

void CXHMTLBaseImpl::SkipSpace()
{
    while (!AtEnd() && IsSpace(Current()))
        ++m_nPos;
}

// To the first place of sWhat at or after nFrom. False, and the position stays, if there
// is none.
bool CXHMTLBaseImpl::SkipTo(string_view_t sWhat, std::size_t nFrom)
{
    const std::size_t nFound = m_sText.find(sWhat, nFrom);
    if (nFound == string_view_t::npos)
        return false;
    m_nPos = nFound;
    return true;
}

string_view_t CXHMTLBaseImpl::TakeUntilSpaceOr(OLECHAR c)
{
    const std::size_t nStart = m_nPos;
    while (!AtEnd() && Current() != c && !IsSpace(Current()))
        ++m_nPos;
    return m_sText.substr(nStart, m_nPos - nStart);
}

} // namespace Hesperon::specifics
