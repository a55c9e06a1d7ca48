#include "bench/report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "bench/machine.h"

namespace pxb::bench {
namespace {

constexpr int kBits = 8 * sizeof(void*);
constexpr int kNameWidth = 35;

std::vector<std::string> Columns() {
    std::vector<std::string> columns = VariantNames();
    for (const Peer& peer : Peers()) columns.push_back(peer.name);
    columns.push_back("copy");
    return columns;
}

void PrintCell(const Result& result, const std::string& column) {
    const auto series = std::find_if(result.series.begin(), result.series.end(),
                                     [&](const Series& s) { return s.name == column; });
    if (series == result.series.end())
        std::printf("%8s  ", "-");
    else if (series->calls > 1)
        std::printf("%8.3fx%d", series->Median(), series->calls);
    else
        std::printf("%8.3f  ", series->Median());
}

void PrintRatio(const std::optional<Ratio>& ratio) {
    if (ratio)
        std::printf("  %5.2f %5.2f", ratio->median, ratio->lower_quartile);
    else
        std::printf("  %5s %5s", "-", "-");
}

// Where there is no target, the ratio to the fastest library of a variant that is not the widest.
void PrintVerdict(const Series& ours, const Result& result) {
    const std::optional<Verdict> verdict = Judge(ours, result);
    const std::optional<Ratio> untargeted = RatioTo(Kind::kPeer, ours, result);
    if (!verdict && (&ours == &Widest(result) || !untargeted)) return;
    std::printf("  %s", ours.name.c_str());
    PrintRatio(verdict ? verdict->ratio : untargeted);
    if (!verdict) return;
    std::printf(" %.1f %s", verdict->target, verdict->reached ? "reached" : "MISSED");
}

std::string NameOf(const Result& result) {
    return RowName(result.row->name, result.width, result.height);
}

void Append(std::string& list, const std::string& item) {
    list += (list.empty() ? "" : ", ") + item;
}

// Whole registers, and an awkward end of every row.
constexpr Size kEven = {832, 480}, kAwkward = {854, 480};

const Result* Find(std::span<const Result> results, const Row* row, Size size) {
    const auto found = std::find_if(results.begin(), results.end(), [&](const Result& result) {
        return result.row == row && result.width == size.width && result.height == size.height &&
               !result.series.empty();
    });
    return found == results.end() ? nullptr : &*found;
}

const Series& Same(const Series& ours, const Result& result) {
    return *std::find_if(result.series.begin(), result.series.end(),
                         [&](const Series& s) { return s.name == ours.name; });
}

bool BeatsPeers(const Series& ours, const Result& result) {
    const std::optional<Ratio> ratio = RatioTo(Kind::kPeer, ours, result);
    return ratio && ratio->median >= 1;
}

// What the awkward width costs the conversions, by best times per pixel.
class WidthReport {
  public:
    void Add(const Series& at_even, const Result& even, const Result& awkward) {
        const Series& at_awkward = Same(at_even, awkward);
        const double ratio = at_awkward.Best() / at_even.Best();
        const std::string name = even.row->name;
        ++rows_, logarithms_ += std::log(ratio);
        if (ratio > worst_) worst_ = ratio, worst_name_ = name;
        if (ratio > kAtMost) Append(beyond_, name);
        if (BeatsPeers(at_even, even) && !BeatsPeers(at_awkward, awkward)) Append(behind_, name);
    }

    void Print(const std::string& variant) const {
        const double mean = std::exp(logarithms_ / rows_);
        std::printf(
            "\nTime per pixel with %s at %dx%d in times of that at %dx%d, %d conversions: mean\n"
            "%.3f (%.2f %s), worst %.3f, %s (%.2f %s%s). Behind the fastest library there only: "
            "%s.\n",
            variant.c_str(), kAwkward.width, kAwkward.height, kEven.width, kEven.height, rows_,
            mean, kMean, mean <= kMean ? "reached" : "MISSED", worst_, worst_name_.c_str(), kAtMost,
            beyond_.empty() ? "reached" : "MISSED: ", beyond_.c_str(),
            behind_.empty() ? "none" : behind_.c_str());
    }

  private:
    static constexpr double kMean = 1.15, kAtMost = 1.35;  // geometric mean, and each row
    int rows_ = 0;
    double logarithms_ = 0, worst_ = 0;
    std::string worst_name_, beyond_, behind_;
};

void PrintWidths(std::span<const Result> results) {
    std::map<std::string, WidthReport> reports;  // by variant
    for (const Result& even : results) {
        const Result* const awkward = Find(results, even.row, kAwkward);
        if (&even != Find(results, even.row, kEven) || !awkward) continue;
        if (even.row->job != Job::kConvert) continue;
        for (const Series* ours : Judged(even)) reports[ours->name].Add(*ours, even, *awkward);
    }
    for (const auto& [variant, report] : reports) report.Print(variant);
}

void PrintSetbacks(std::span<const Result> results) {
    std::string list;
    for (const Result& result : results)
        for (const Setback& setback : Setbacks(result)) {
            char ratio[16];
            std::snprintf(ratio, sizeof ratio, "%.2f", setback.ratio);
            list += "\n  " + NameOf(result) + ": " + setback.variant->name + " takes " + ratio +
                    " times as long as " + setback.narrower->name;
        }
    std::printf("\nSlower than a narrower variant:%s\n", list.empty() ? " none" : list.c_str());
}

}  // namespace

std::string RowName(const std::string& name, int width, int height) {
    return name + " " + std::to_string(width) + "x" + std::to_string(height);
}

void PrintHead() {
    std::printf("%s, %d bits, %s\n", ProcessorName().c_str(), kBits, CompilerName().c_str());
    std::printf(
        "Nanoseconds per pixel: medians, and the best of our widest variant. xN: N calls of the\n"
        "library. Then how many times as fast our widest variant is as the fastest library and as\n"
        "a plain copy of the bytes written: median, lower quartile. Then the target, if any, and\n"
        "what AVX2 and our widest variant reach of it, each as if nothing wider were there; and\n"
        "the variants that are slower than a narrower one, by medians and by best times.\n\n");
    std::printf("%-*s", kNameWidth, "");
    for (const std::string& column : Columns()) std::printf("%8s  ", column.c_str());
    std::printf("%7s  %11s  %11s\n", "best", "x library", "x copy");
}

void PrintLine(const Result& result) {
    if (result.answer) return;
    std::printf("%-*s", kNameWidth, NameOf(result).c_str());
    if (!result.fault.empty()) {
        std::printf("  not timed: %s\n", result.fault.c_str());
        return;
    }
    const std::vector<std::string> columns = Columns();
    for (const std::string& column : columns) PrintCell(result, column);
    std::printf("%7.3f", Widest(result).Best());
    PrintRatio(RatioTo(Kind::kPeer, Widest(result), result));
    PrintRatio(RatioTo(Kind::kCopy, Widest(result), result));
    for (const Series* ours : Judged(result)) PrintVerdict(*ours, result);
    for (const Setback& setback : Setbacks(result))
        std::printf("  %s SLOWER than %s", setback.variant->name.c_str(),
                    setback.narrower->name.c_str());
    for (const Series& series : result.series)
        if (std::find(columns.begin(), columns.end(), series.name) == columns.end())
            std::printf("  %s %.3f", series.name.c_str(), series.Median());
    std::printf("\n");
    std::fflush(stdout);
}

void PrintSummary(std::span<const Result> results) {
    struct Count {
        int reached = 0;
        std::string missed;
    };
    std::map<std::string, Count> counts;
    std::string unsupported;
    for (const Result& result : results) {
        if (result.answer)
            Append(unsupported, result.row->name + (" (" + std::to_string(result.answer)) + ")");
        if (result.series.empty()) continue;
        for (const Series* ours : Judged(result)) {
            const std::optional<Verdict> verdict = Judge(*ours, result);
            if (!verdict) continue;
            Count& count = counts[ours->name];
            if (verdict->reached)
                ++count.reached;
            else
                Append(count.missed, NameOf(result));
        }
    }
    for (const auto& [variant, count] : counts)
        std::printf("\nTargets reached with %s: %d. Missed: %s.\n", variant.c_str(), count.reached,
                    count.missed.empty() ? "none" : count.missed.c_str());
    PrintWidths(results);
    PrintSetbacks(results);
    if (!unsupported.empty())
        std::printf("\nSkipped, since the library answers 1 or 2: %s.\n", unsupported.c_str());
}

// The two builds ran at different times: the best times compare better than medians, and the column
// of the copy shows how alike the circumstances were.
void PrintComparison(std::span<const Result> results, const Baseline& baseline) {
    constexpr double kSlower = 1.2;
    std::printf(
        "\nBest times of this build of %d bits, in times of those of %d bits. Target of AVX2\n"
        "and of the widest variant: within %.1f.\n",
        kBits, baseline.bits, kSlower);
    for (const Result& result : results) {
        if (result.series.empty()) continue;
        std::printf("%-*s", kNameWidth, NameOf(result).c_str());
        const std::vector<const Series*> judged = Judged(result);
        for (const Series& series : result.series) {
            const auto there = baseline.best.find({NameOf(result), series.name});
            if (series.kind == Kind::kPeer || there == baseline.best.end()) continue;
            const double ratio = series.Best() / there->second;
            std::printf("  %s %5.2f", series.name.c_str(), ratio);
            if (std::find(judged.begin(), judged.end(), &series) != judged.end())
                std::printf(" %s", ratio <= kSlower ? "within" : "SLOWER");
        }
        std::printf("\n");
    }
}

}  // namespace pxb::bench
