#pragma once

#include <benchmark/benchmark.h>

namespace orvelle::bench {

/// 35 repetitions of one run each, reported as median and 95th percentile.
void inRuns(benchmark::internal::Benchmark *benchmark);

} // namespace orvelle::bench
