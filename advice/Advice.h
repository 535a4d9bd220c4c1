// Advice: how a file is best read, out of readings that were tried.
//
// The engine's own reading comes first wherever it is right. Else the candidates of the table are
// tried and scored, at most kMostTries of them and for at most kMostTime. Two readings that differ
// in values, and that nothing decides between, are both told: there is no guess in silence.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "advice/Reading.h"
#include "advice/Score.h"
#include "advice/Table.h"
#include "advice/Trial.h"
#include "advice/forms/FileSample.h"

namespace tabulex::advice {

inline constexpr std::size_t kMostTries = 64;
inline constexpr std::chrono::milliseconds kMostTime{1500}; // after which no try begins

enum class Verdict
{
    AsItStands, // the engine's own reading is right
    Advised,    // the first reading
    Undecided,  // the first two differ, and nothing decides
    None        // no reading comes out well
};

struct JudgedReading
{
    Reading reading;
    Score score;
};

struct Advice
{
    Verdict verdict = Verdict::None;
    std::vector<JudgedReading> readings; // the best first; none but with verdict None
    std::string sReason;                 // a sentence: why this verdict
    std::vector<std::string> doubts;     // sentences that hold whatever is done
    std::size_t nTries = 0;
};

// `preferred` decides an order of day and month that nothing else decides.
Advice Advise(const FileSample& sample, const Decoder& decode, ITrial& trial,
              DayMonth preferred = DayMonth::Certain);

} // namespace tabulex::advice
