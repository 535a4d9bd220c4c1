#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

void ReviewLayout(const Host& host, const std::vector<ColumnSetting>& byUser, Warnings& warnings)
{
    LayoutFacts facts = ReadFacts(host, byUser);
    ReviewEncoding(host, facts, warnings);
    ReviewHeadingLine(facts, warnings);
    ReviewHeadings(host, facts, warnings);
    ReviewNamed(facts, warnings);
    ReviewLeftOut(host, facts, warnings);
    ReviewGaps(facts, warnings);
    ReviewValues(facts, warnings);
    ReviewGuesses(facts, warnings);
    ReviewTimes(facts, warnings);
}

} // namespace tabulex
