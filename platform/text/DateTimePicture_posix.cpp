#include "platform/text/DateTimePicture_posix.h"

#include <algorithm>

#include <fmt/format.h>

namespace {

constexpr OLECHAR kQuote = u'\'';

bool IsPictureLetter(OLECHAR c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Takes the next piece off the front: a run of one letter, a text between apostrophes together
// with them, or a single unit of anything else.
string_view_t NextPiece(string_view_t& rest)
{
    const OLECHAR c = rest.front();
    std::size_t nLength = 1;
    if (c == kQuote)
        nLength = std::min(rest.find(kQuote, 1), rest.size() - 1) + 1;
    else if (IsPictureLetter(c))
        nLength = std::min(rest.find_first_not_of(c), rest.size());
    const string_view_t piece = rest.substr(0, nLength);
    rest.remove_prefix(nLength);
    return piece;
}

// The letters of Windows for a run of one letter of a pattern.
string_t PictureField(string_view_t run)
{
    const std::size_t nWidth = std::min<std::size_t>(run.size(), 2);
    switch (run.front()) {
    case u'y':
    case u'u':
        return u"yyyy";
    case u'M':
    case u'L':
        return string_t(nWidth, u'M');
    case u'H':
    case u'k':
        return string_t(nWidth, u'H');
    case u'h':
    case u'K':
        return string_t(nWidth, u'h');
    case u'd':
    case u'm':
    case u's':
        return string_t(nWidth, run.front());
    case u'a':
    case u'b':
    case u'B':
        return u"tt";
    default:
        return {};
    }
}

// The number that a letter stands for.
unsigned FieldNumber(OLECHAR letter, const SYSTEMTIME& time)
{
    switch (letter) {
    case u'y':
        return time.wYear;
    case u'M':
        return time.wMonth;
    case u'd':
        return time.wDay;
    case u'H':
        return time.wHour;
    case u'h':
        return time.wHour % 12 == 0 ? 12 : time.wHour % 12u;
    case u'm':
        return time.wMinute;
    default:
        return time.wSecond;
    }
}

} // namespace

void PlainBlanks(string_t& text)
{
    std::ranges::replace_if(
        text, [](OLECHAR c) { return c == u'\u00A0' || c == u'\u202F'; }, u' ');
}

string_t PictureOf(string_view_t pattern)
{
    string_t picture;
    while (!pattern.empty()) {
        const string_view_t piece = NextPiece(pattern);
        if (IsPictureLetter(piece.front()))
            picture += PictureField(piece);
        else
            picture += piece;
    }
    PlainBlanks(picture);
    return picture;
}

string_t FillPicture(string_view_t picture, const SYSTEMTIME& time, string_view_t sMark)
{
    string_t text;
    while (!picture.empty()) {
        const string_view_t piece = NextPiece(picture);
        if (piece.front() == kQuote) {
            const bool bClosed = piece.size() > 1 && piece.back() == kQuote;
            text += piece.substr(1, piece.size() - (bClosed ? 2 : 1));
        } else if (piece.front() == u't') {
            text += sMark;
        } else if (IsPictureLetter(piece.front())) {
            const std::string digits =
                fmt::format("{:0{}}", FieldNumber(piece.front(), time), piece.size());
            text.append(digits.begin(), digits.end());
        } else {
            text += piece;
        }
    }
    return text;
}
