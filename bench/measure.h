// Times all competitors of a row against one another, and what follows from the times.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "bench/peers.h"

namespace pxb::bench {

struct Settings {
    int rounds;             // a multiple of Scene::kPlaces
    double sample_seconds;  // the shortest time that is measured
    int attempts;           // at a row, until the machine is calm
};

enum class Kind {
    kOurs,
    kPeer,
    kCopy,
};

// One competitor: a time per round, in nanoseconds per pixel of the destination.
struct Series {
    std::string name;
    Kind kind;
    int calls;
    std::vector<double> ns;
    double Median() const;
    double Best() const;
};

struct Result {
    const Row* row;
    int width, height;
    std::vector<Series> series;  // ours first, the widest variant last among them
    std::int32_t answer;         // of the library; other than 0: nothing was timed
    std::string fault;  // which competitor does something else than we do; nothing was timed
};

Result Measure(const Row& row, int width, int height, const Settings& settings);

// The names of our variants that this processor can run, narrowest first.
std::vector<std::string> VariantNames();

const Series& Widest(const Result& result);

// Those of our variants that targets are for: AVX2 and wider, or the widest where it is less.
std::vector<const Series*> Judged(const Result& result);

// One of our variants that takes longer than a narrower one, in its times, both by medians and by
// best times: by the smaller of the two ratios.
struct Setback {
    const Series *variant, *narrower;
    double ratio;
};

// At most one for each variant, against the narrower one that beats it most.
std::vector<Setback> Setbacks(const Result& result);

// How many times as fast as a competitor one of our variants is, over the rounds.
struct Ratio {
    std::string against;
    double median, lower_quartile;
};

// Against the fastest of the kind; empty where there is none.
std::optional<Ratio> RatioTo(Kind kind, const Series& ours, const Result& result);

struct Verdict {
    double target;
    Ratio ratio;
    bool reached;
};

// Empty where there is no target, or nothing to hold the row against. Targets are for 64 bits.
std::optional<Verdict> Judge(const Series& ours, const Result& result);

}  // namespace pxb::bench
