#pragma once

#include <benchmark/benchmark.h>
#include <functional>
#include <string>

namespace rv52::bench {

// The median over repetitions of the time that one call of body takes, in microseconds.
double InnerTime(const std::string& name, const std::function<void()>& body);

template <class Value>
void Keep(Value&& value) {
    benchmark::DoNotOptimize(value);
}

}  // namespace rv52::bench
