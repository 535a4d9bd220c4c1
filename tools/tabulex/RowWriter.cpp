#include "tools/tabulex/RowWriter.h"

#include "tools/tabulex/CsvWriter.h"
#include "tools/tabulex/JsonLinesWriter.h"

namespace tabulex {

std::unique_ptr<RowWriter> MakeRowWriter(OutputFormat format, std::vector<Column> columns)
{
    if (format == OutputFormat::JsonLines)
        return std::make_unique<JsonLinesWriter>(std::move(columns));
    return std::make_unique<CsvWriter>(std::move(columns));
}

} // namespace tabulex
