// What the fuzzers do with an input. Each aborts where something that always holds doesn't.
//
// The fuzzers make inputs up; the test program test_fuzz gives each target the inputs that
// are kept in fuzz/corpus, without libFuzzer and in every preset.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz {

// A quote file of any bytes: opened, its layout found, converted to the end.
void ConvertFile(const std::uint8_t* data, std::size_t nSize);

// A quote file of any bytes: advised on.
void AdviseFile(const std::uint8_t* data, std::size_t nSize);

// Lines and a recipe for them: each line keeps its place.
void CleanLines(const std::uint8_t* data, std::size_t nSize);

// An environment document: read, written and read again; and what the scanner calls,
// against a plain scanner.
void ReadDocument(const std::uint8_t* data, std::size_t nSize);

// A template and a text: the compiled matcher against a plain one.
void MatchTemplate(const std::uint8_t* data, std::size_t nSize);

// Aborts, with a word on stderr, where it doesn't hold.
void Require(bool bHolds, const char* szWhat);

} // namespace fuzz
