// A second implementation of the scanner: a list of rules on a text that ends with a zero.
// Reading the zero throws.

#include <array>

#include "tests/parsing/FieldText.h"
#include "tests/values/Heard.h"

namespace {

struct Broken
{};

bool IsBlank(OLECHAR c)
{
    constexpr std::array<int, 25> kBlanks = {0x9,    0xA,    0xB,    0xC,    0xD,    0x20,   0x85,
                                             0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                             0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028,
                                             0x2029, 0x202F, 0x205F, 0x3000};
    for (const int nBlank : kBlanks)
        if (nBlank == c)
            return true;
    return false;
}

std::string Lower(std::string s)
{
    for (char& c : s)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return s;
}

std::string Trimmed(std::string s)
{
    while (!s.empty() && s.front() == '"')
        s.erase(0, 1);
    while (!s.empty() && s.back() == '"')
        s.pop_back();
    return s;
}

// A name in letters by which every class can be recognised.
std::string Class(const std::string& sName)
{
    if (sName.substr(0, 3) == "!--")
        return "comment";
    const std::string sLower = Lower(sName);
    return sLower == "script" || sLower == "style" || sLower == "?xml" ? sLower : "";
}

class PlainScanner
{
public:
    explicit PlainScanner(const string_t& sText) : m_p(sText.c_str()) {}

    std::string Run()
    {
        try {
            while (Blanks(), *m_p)
                if (*m_p == '<')
                    Element();
                else
                    m_sHeard += "'" + Trimmed(Run('<', false)) + "' ";
            return m_sHeard + "ok";
        } catch (const Broken&) {
            return m_sHeard + "broken";
        }
    }

private:
    void Blanks()
    {
        while (IsBlank(*m_p))
            ++m_p;
    }

    OLECHAR Here() const
    {
        if (!*m_p)
            throw Broken();
        return *m_p;
    }

    std::string Run(OLECHAR cEnd, bool bOrBlank)
    {
        string_t s;
        for (; Here() != cEnd && !(bOrBlank && IsBlank(*m_p)); ++m_p)
            s += *m_p;
        return Shown(s);
    }

    void Element()
    {
        ++m_p;
        bool bEnd = *m_p == '/';
        m_p += bEnd;
        Blanks();
        Here();
        const OLECHAR* const pName = m_p;
        std::string sName = Run('>', true);
        bool bClosed = *m_p == '>' && m_p[-1] == '/';
        if (bClosed && !sName.empty())
            sName.pop_back();
        if (sName.empty())
            throw Broken();
        const std::string sClass = Class(sName);
        if (sClass == "comment" && !bEnd) {
            m_p = pName + 3;
            while (m_p[0] != '-' || m_p[1] != '-' || m_p[2] != '>')
                Here(), ++m_p;
            m_p += 2;
        } else {
            bClosed |= Attributes(sClass);
        }
        sName = Trimmed(sName);
        if (sClass != "comment" && bEnd)
            m_sHeard += "-" + sName + " ";
        if (sClass != "comment" && sClass != "?xml" && !bEnd)
            m_sHeard += "+" + sName + " " + (bClosed ? "-" + sName + " " : "");
        Here();
        ++m_p;
        if (!bEnd && !bClosed && (sClass == "script" || sClass == "style"))
            Raw(sClass);
    }

    // Whether a slash ended them.
    bool Attributes(const std::string& sClass)
    {
        for (;;) {
            Blanks();
            if (Here() == '>')
                return false;
            if (*m_p == '/' || (*m_p == '?' && sClass == "?xml"))
                return *m_p++ == '/';
            Run('=', true);
            Blanks();
            if (Here() != '=')
                continue;
            ++m_p;
            Blanks();
            if (Here() == '"' || *m_p == '\'') {
                const OLECHAR cQuote = *m_p++;
                Run(cQuote, false);
                ++m_p;
            } else {
                Run('>', true);
            }
        }
    }

    void Raw(const std::string& sClass)
    {
        for (;;) {
            Run('<', false);
            ++m_p;
            const bool bEnd = *m_p == '/';
            m_p += bEnd;
            Blanks();
            const std::string sName = Run('>', true);
            if (!bEnd || Class(sName) != sClass)
                continue;
            Attributes("");
            m_sHeard += "-" + sName + " ";
            Here();
            ++m_p;
            return;
        }
    }

    const OLECHAR* m_p;
    std::string m_sHeard;
};

} // namespace

std::string PlainlyHeard(string_view_t sDocument)
{
    const string_t sText(sDocument);
    return PlainScanner(sText).Run();
}
