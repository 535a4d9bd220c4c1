// The benchmark's file: one-minute bars with a header,
//   Date,Time,Open,High,Low,Close,Volume
//   01/03/1990,09:30,1000.00,1000.42,999.77,1000.13,1250
// made once in each run, in the folder for temporary files, and removed at its end.
#pragma once

#include <cstdint>
#include <string>

// Path of the file; it is written at the first call.
const std::string& MinuteBarsPath();
std::uint64_t MinuteBarsRows();
std::uint64_t MinuteBarsBytes();

// Sets the number of rows. To be called before the file is first used.
void SetMinuteBarsRows(std::uint64_t nRows);
