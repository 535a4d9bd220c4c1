// Intake: turns the lines of a quote file into clean lines, as a recipe says.
//
// Text comes in blocks of any size and leaves in blocks of whole lines. Line n of the file is line
// n of the clean text, after the heading of the recipe if that has one: a line that is left out,
// or that belongs to a row begun above, becomes blank. Only sorted rows change places, and blank
// lines among them go. Text is bytes in which ASCII is ASCII, as in UTF-8: whoever reads other
// encodings converts first, and takes a mark off the beginning. Lines end with LF or CR LF, with CR
// in a text whose beginning has no LF, and clean lines with LF.
//
// Memory is bounded whatever the text: kMostLineBytes of a line are looked at, longer ones are
// handed on cut and counted. Rows that are sorted wait in a store that the caller gives, such as a
// temporary file. Used by one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "intake/Recipe.h"

namespace tabulex::intake {

// Bytes of a line, and of lines that quotation marks join.
inline constexpr std::size_t kMostLineBytes = std::size_t{1} << 20;
// Cells of a line; those behind are left out.
inline constexpr std::size_t kMostCells = 16384;

// What was done, in lines, cells or rows.
struct IntakeAccount
{
    std::uint64_t nLines = 0;          // of the text that came in
    std::uint64_t nRows = 0;           // lines that hold a row; others are blank, or were left out
    std::uint64_t nLeftOut = 0;        // lines that the recipe leaves out, or that stand ahead of
                                       // the heading
    std::uint64_t nHeading = 0;        // 1 if the last line ahead of the first row is a heading
    std::uint64_t nJoined = 0;         // lines that quotation marks join to the one above
    std::uint64_t nOpenQuotes = 0;     // lines with a mark that isn't closed
    std::uint64_t nCut = 0;            // lines that are too long
    std::uint64_t nNumbers = 0;        // cells of numbers that were written otherwise
    std::uint64_t nMoments = 0;        // rows whose moment was read
    std::uint64_t nBadMoments = 0;     // rows whose moment couldn't be read
    std::uint64_t nMissing = 0;        // cells without a value
    std::uint64_t nBadNumbers = 0;     // cells that were taken for numbers and are none
    std::uint64_t nRounded = 0;        // scaled cells with more digits than the scale keeps
    std::uint64_t nFiner = 0;          // moments that lost a part of a millisecond
    std::uint64_t nOffsets = 0;        // moments with an offset that wasn't looked at
    bool bOffsetsDiffer = false;       // of these
    std::uint64_t nNoSuchClock = 0;    // moments that a change of clocks leaps over
    std::uint64_t nTwiceClock = 0;     // moments that it has twice; the first one is taken
    std::uint64_t nMoved = 0;          // rows that sorting put behind a row that came after them
    std::uint64_t nFirstOpenQuote = 0; // number of the line, from 1; 0 for none. So the others.
    std::uint64_t nFirstCut = 0;
    std::uint64_t nFirstBadMoment = 0;
    std::uint64_t nFirstBadNumber = 0;
    std::uint64_t nFirstMissing = 0;
    std::uint64_t nFirstRounded = 0;
};

// Thrown for a recipe that can't be done: see FaultIn.
struct RecipeFault
{
    std::string sMessage; // one sentence for the user
};

// Bytes that don't fit into memory. What its functions throw, as where a disk is full, passes
// through those of Intake and Origins, and ends the work.
class Store
{
public:
    virtual ~Store() = default;
    virtual void Append(std::string_view bytes) = 0;
    // Fills the buffer from bytes that were appended.
    virtual void ReadAt(std::uint64_t nOffset, std::span<char> buffer) = 0;
};
using MakeStore = std::function<std::unique_ptr<Store>()>;

// A store in memory, for texts that are small.
std::unique_ptr<Store> StoreInMemory();

// Which line of the file a line of the clean text was.
class Origins
{
public:
    virtual ~Origins() = default;
    // Both from 0. kNoOrigin for the heading of the recipe, and behind the end of sorted rows.
    virtual std::uint64_t Of(std::uint64_t nCleanLine) const = 0;
};

inline constexpr std::uint64_t kNoOrigin = ~std::uint64_t{0};

class Intake
{
public:
    // Takes whole lines of clean text, in order. What it throws passes through Feed and Finish.
    using Output = std::function<void(std::string_view text)>;

    // Throws RecipeFault. Stores are made for rows that are sorted.
    Intake(const Recipe& recipe, Output output, MakeStore makeStore = StoreInMemory);
    ~Intake();
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;

    // The next bytes of the text. After a throw only the destructor may be called.
    void Feed(std::string_view text);
    // The end of the text; sorted rows leave now. Once, and no Feed after it.
    void Finish();

    const IntakeAccount& Account() const;
    // Between the cells of the text that came in; known after Finish.
    char Divider() const;
    // After Finish; lives on without this object.
    std::shared_ptr<const Origins> LineOrigins() const;

private:
    class Work;
    std::unique_ptr<Work> m_work;
};

// All of it at once, for texts that fit into memory.
std::string CleanText(const Recipe& recipe, std::string_view text,
                      IntakeAccount* pAccount = nullptr);

} // namespace tabulex::intake
