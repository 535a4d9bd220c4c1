#include "tools/tabulex/output/RowOutput.h"

#include "tools/tabulex/output/SqliteOutput.h"
#include "tools/tabulex/output/TextOutput.h"

namespace tabulex {

std::unique_ptr<RowOutput> OpenRowOutput(const OutputOptions& options, std::vector<Column> columns)
{
    if (options.format == OutputFormat::Sqlite)
        return std::make_unique<SqliteOutput>(options, std::move(columns));
    return std::make_unique<TextOutput>(options, std::move(columns));
}

std::string CheckRowOutput(const OutputOptions& options, const std::vector<Column>& columns)
{
    if (options.format == OutputFormat::Sqlite)
        return CheckSqliteOutput(options, columns);
    CheckTextOutput(options, columns);
    return {};
}

} // namespace tabulex
