// The results as a table for people, as JSON, and beside those of another build.
#pragma once
#include <map>
#include <span>

#include "bench/measure.h"

namespace pxb::bench {

void PrintHead();
void PrintLine(const Result& result);  // nothing for a pair that the library does not support
void PrintSummary(std::span<const Result> results);

// This and Baseline::Read throw std::runtime_error.
void WriteJson(const std::string& path, std::span<const Result> results, const Settings& settings);

// "I420->RGB32 1920x1080".
std::string RowName(const std::string& name, int width, int height);

// The best times of another build, in nanoseconds per pixel, by row and competitor.
struct Baseline {
    int bits = 0;
    std::map<std::pair<std::string, std::string>, double> best;

    // Adds a file that WriteJson wrote. Of several runs the best times count.
    void Read(const std::string& path);
};

// How long our variants take here, in times of the other build's.
void PrintComparison(std::span<const Result> results, const Baseline& baseline);

}  // namespace pxb::bench
