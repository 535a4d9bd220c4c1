// A whole conversion, from the file to a sink that reads every cell.

#include <benchmark/benchmark.h>

#include "bench/MinuteBars.h"
#include "bench/Parser.h"
#include "bench/versus/HandWrittenReaders.h"

namespace bench {

HRESULT ReadingSink::PutRecords(VARIANT vRecords, ULONGLONG)
{
    LONG nLast = -1;
    LONG nLastColumn = -1;
    SafeArrayGetUBound(vRecords.parray, 1, &nLastColumn);
    SafeArrayGetUBound(vRecords.parray, 2, &nLast);
    const LONG nCells = (nLast + 1) * (nLastColumn + 1);
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(vRecords.parray, &data)))
        return E_FAIL;
    for (const VARIANT* cell = static_cast<VARIANT*>(data);
         cell != static_cast<VARIANT*>(data) + nCells; ++cell)
        m_fSum += cell->vt == VT_I8 ? static_cast<double>(cell->llVal) : cell->dblVal;
    SafeArrayUnaccessData(vRecords.parray);
    m_nRows += nLast + 1;
    return S_OK;
}

HRESULT ReadingSink::EndTransaction(VARIANT_BOOL bResult)
{
    std::lock_guard lock(m_mutex);
    m_bEnded = true;
    m_bResult = bResult != VARIANT_FALSE;
    m_ended.notify_all();
    return S_OK;
}

bool ReadingSink::Wait()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_bEnded; });
    return m_bResult;
}

namespace {

void Convert(benchmark::State& state)
{
    const com_ptr<IDataParser> parser = OpenFile(MinuteBarsPath());
    for (auto _ : state) {
        com_ptr<ReadingSink> sink;
        CreateObject(sink);
        Check(parser->StartConversion(sink.get(), 1), "StartConversion");
        if (!sink->Wait() || sink->Rows() != MinuteBarsRows())
            throw std::runtime_error("the conversion lost rows");
        benchmark::DoNotOptimize(sink->Sum());
    }
    state.SetBytesProcessed(state.iterations() * MinuteBarsBytes());
    state.SetItemsProcessed(state.iterations() * MinuteBarsRows());
}
BENCHMARK(Convert)->Unit(benchmark::kMillisecond)->UseRealTime();

void HandWrittenReader(benchmark::State& state)
{
    for (auto _ : state) {
        const HandReading reading = ReadByHand("minutes", MinuteBarsPath());
        if (reading.nRows != MinuteBarsRows())
            throw std::runtime_error("the reader lost rows");
        benchmark::DoNotOptimize(reading.fSum);
    }
    state.SetBytesProcessed(state.iterations() * MinuteBarsBytes());
    state.SetItemsProcessed(state.iterations() * MinuteBarsRows());
}
BENCHMARK(HandWrittenReader)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace bench
