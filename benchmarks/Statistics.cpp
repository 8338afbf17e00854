#include "Statistics.h"

#include <algorithm>
#include <cmath>

namespace orvelle::bench {

namespace {

double percentile95(const std::vector<double> &values)
{
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    const auto rank = static_cast<size_t>(std::ceil(0.95 * static_cast<double>(sorted.size())));
    return sorted[rank - 1];
}

} // namespace

void inRuns(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Iterations(1)->Repetitions(35)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
}

} // namespace orvelle::bench
