// The entries of facade/tabulex/entries.hpp. Nothing is thrown through them: a failure is told, and
// the entry gives null or Step::failed.

#include <new>

#include "component/ProcessDefaults.h"
#include "component/reader/ReadFailure.h"
#include "component/reader/RowRun.h"
#include "interfaces/NativeHost.h"

namespace tabulex::detail {

using Hesperon::reader::FileColumn;
using Hesperon::reader::OpenedFile;
using Hesperon::reader::ReadFailure;
using Hesperon::reader::RowBatch;
using Hesperon::reader::RowRun;

struct Reader : OpenedFile
{
    using OpenedFile::OpenedFile;
};

struct Run : RowRun
{
    using RowRun::RowRun;
};

struct Batch
{
    std::unique_ptr<RowBatch> rows;
};

namespace {

Text EntryText(const std::string& text)
{
    return {text.data(), text.size()};
}

// What the work gives; `other` after a failure.
template <class Result, class Work>
Result Try(Failing fail, Result other, Work work) noexcept
try {
    return work();
} catch (const ReadFailure& failure) {
    fail.tell(fail.context, EntryText(failure.sMessage), failure.nLine);
    return other;
} catch (const std::bad_alloc&) {
    constexpr std::string_view kMessage = "memory ran out";
    fail.tell(fail.context, {kMessage.data(), kMessage.size()}, 0);
    return other;
} catch (const std::exception& exception) {
    const std::string_view message = exception.what();
    fail.tell(fail.context, {message.data(), message.size()}, 0);
    return other;
}

} // namespace

// ---- files

Reader* TabulexReaderOpen(Text path, const Choices* choices, Failing fail)
{
    return Try<Reader*>(fail, nullptr, [&] {
        SetProcessDefaults();
        return new Reader(std::string_view(path.data, path.size), *choices);
    });
}

void TabulexReaderClose(Reader* reader)
{
    delete reader;
}

void TabulexReaderLayout(const Reader* reader, LayoutRow* layout)
{
    *layout = reader->Layout();
}

void TabulexReaderColumn(const Reader* reader, std::size_t column, ColumnRow* row)
{
    const FileColumn& found = reader->Columns()[column];
    *row = {found.nType, EntryText(found.sTemplate), EntryText(found.sHeading)};
}

// ---- runs

Run* TabulexRunStart(Reader* reader, Failing fail)
{
    return Try<Run*>(fail, nullptr, [&] { return new Run(*reader); });
}

Step TabulexRunNext(Run* run, Batch** batch, BatchRow* rows, Failing fail)
{
    return Try(fail, Step::failed, [&] {
        auto next = std::make_unique<Batch>();
        const Step step = run->Next(next->rows);
        if (step == Step::batch) {
            *rows = next->rows->View();
            *batch = next.release();
        }
        return step;
    });
}

void TabulexRunCancel(Run* run)
{
    run->Cancel();
}

void TabulexRunCounts(const Run* run, CountsRow* counts)
{
    *counts = run->Counts();
}

void TabulexRunClose(Run* run)
{
    delete run;
}

void TabulexBatchClose(Batch* batch)
{
    delete batch;
}

// ---- the process

int TabulexReaderEncoding(Text name)
{
    return SUCCEEDED(TabulexSetEncoding(std::string(name.data, name.size).c_str()));
}

} // namespace tabulex::detail
