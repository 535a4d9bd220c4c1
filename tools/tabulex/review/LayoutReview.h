// The review of a layout: whether what the file's columns were taken for is what they say.
//
// Nothing is decided here and nothing changed: what a person should look at becomes a warning,
// with the setting that mends it. Columns that the user has named are questioned only where the
// heading names another price or volume.
#pragma once

#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/review/LayoutFacts.h"

namespace tabulex {

// For a file that has been opened with its settings and can be converted. Leaves the position
// at record 0.
void ReviewLayout(const Host& host, const std::vector<ColumnSetting>& byUser, Warnings& warnings);

// ---- its parts

// Columns without a type, and rows of several symbols that this makes one.
void ReviewLeftOut(const Host& host, const LayoutFacts& facts, Warnings& warnings);

// Rows with empty cells, which the component passes over: what stands behind them is read as the
// column before.
void ReviewGaps(const LayoutFacts& facts, Warnings& warnings);

// A heading line that is a row of data, or has too few names. Its words are forgotten then.
void ReviewHeadingLine(LayoutFacts& facts, Warnings& warnings);

// Headings that say something else than the type, or nothing.
void ReviewHeadings(const Host& host, const LayoutFacts& facts, Warnings& warnings);

// Prices and volumes that the user has named otherwise than their headings do.
void ReviewNamed(const LayoutFacts& facts, Warnings& warnings);

// Types that the values speak against.
void ReviewValues(const LayoutFacts& facts, Warnings& warnings);

// Types that nothing but a place among the columns stands for.
void ReviewGuesses(const LayoutFacts& facts, Warnings& warnings);

// Numbers that were read as times of day.
void ReviewTimes(const LayoutFacts& facts, Warnings& warnings);

// Text that was read in another encoding than its own.
void ReviewEncoding(const Host& host, const LayoutFacts& facts, Warnings& warnings);

} // namespace tabulex
