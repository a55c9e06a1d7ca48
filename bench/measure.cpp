// A measurement interleaves its competitors in random order, round by round, so that whatever else
// the machine does meets all of them. The images move to another place after each third of the
// rounds. Where the plain copy shows that others were at work, the row is measured again, and the
// calmest attempt counts.
#include "bench/measure.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>

#include "bench/machine.h"
#include "convert/processor.h"

namespace pxb::bench {
namespace {

struct Variant {
    const char* name;
    Processor processor;
};

std::vector<Variant> Variants() {
    constexpr std::uint32_t kMmxOnly = kMmx, kUpToSse2 = kMmx | kSse | kSse2;
    constexpr Variant kAll[] = {{"plain", {0, 0}},
                                {"mmx", {kMmxOnly, 0}},
                                {"sse2", {kUpToSse2, 0}},
                                {"avx2", {kUpToSse2, kAvx2}},
                                {"avx512", {kUpToSse2, kAvx2 | kAvx512}}};
    static const Processor kFound = ProbeProcessor();
    std::vector<Variant> variants;
    for (const Variant& v : kAll)
        if (!(v.processor.features & ~kFound.features) && !(v.processor.wide & ~kFound.wide))
            variants.push_back(v);
    return variants;
}

struct Competitor {
    std::string name;
    Kind kind;
    int calls;
    Work run;
};

Work Copy(const Row& row, Scene& scene) {
    if (row.job == Job::kFill)
        return [&dst = scene.dst] { std::memset(dst.record.data, 1, dst.bytes); };
    const Frame& from = scene.src.capacity() < scene.dst.bytes ? scene.between : scene.src;
    return [&] { std::memcpy(scene.dst.record.data, from.record.data, scene.dst.bytes); };
}

std::vector<Contender> Contenders(const Row& row) {
    if (row.job == Job::kTask) return row.task.contenders;
    std::vector<Contender> contenders;
    for (const Peer& peer : Peers())
        contenders.push_back({peer.name, [&](Scene& scene) { return peer.prepare(row, scene); }});
    return contenders;
}

std::vector<Competitor> Competitors(const Row& row, Scene& scene) {
    std::vector<Competitor> competitors;
    for (const Variant& variant : Variants())
        competitors.push_back({variant.name, Kind::kOurs, 1, [&, processor = variant.processor] {
                                   SetProcessor(processor);
                                   Run(row, scene);
                               }});
    for (const Contender& peer : Contenders(row))
        if (const PeerWork work = peer.prepare(scene); work.run)
            competitors.push_back({peer.name, Kind::kPeer, work.calls, work.run});
    competitors.push_back({"copy", Kind::kCopy, 1, Copy(row, scene)});
    return competitors;
}

// What a competitor leaves in the destination after `before` in every byte, or after what the task
// itself puts there.
std::vector<std::uint8_t> Output(const Work& run, const Row& row, Scene& scene,
                                 std::uint8_t before) {
    const Frame& dst = scene.dst;
    std::memset(dst.record.data, before, dst.bytes);
    if (row.task.begin) row.task.begin(scene);
    run();
    return {dst.record.data, dst.record.data + dst.bytes};
}

// In levels per byte. The fourth byte of RGB32 is left out: the libraries differ in it.
double MeanDifference(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b,
                      int format) {
    std::uint64_t sum = 0;
    const unsigned left_out = format == PXB_RGB32 ? 3 : 4;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (i % 4 != left_out) sum += std::abs(a[i] - b[i]);
    return static_cast<double>(sum) / static_cast<double>(a.size());
}

// Nobody's time counts who does not do the job. Bytes that are not written differ by 255.
std::string FindFault(const std::vector<Competitor>& competitors, const Row& row, Scene& scene) {
    constexpr double kRounding = 3;
    const auto ours = std::find_if(competitors.rbegin(), competitors.rend(),
                                   [](const Competitor& c) { return c.kind == Kind::kOurs; });
    const auto expected = Output(ours->run, row, scene, 0);
    for (const Competitor& competitor : competitors) {
        if (competitor.kind == Kind::kCopy) continue;
        const double difference =
            MeanDifference(expected, Output(competitor.run, row, scene, 255), row.destination);
        if (difference > kRounding)
            return competitor.name + " differs from " + ours->name + " by " +
                   std::to_string(difference) + " levels on average";
    }
    return "";
}

double Time(const Work& run, int repeats) {
    const double start = Seconds();
    for (int i = 0; i < repeats; ++i) run();
    return Seconds() - start;
}

int Repeats(const Work& run, double sample_seconds) {
    int repeats = 1;
    double seconds = Time(run, repeats);
    while (seconds < sample_seconds / 4) seconds = Time(run, repeats *= 2);
    return static_cast<int>(std::ceil(repeats * std::max(1.0, sample_seconds / seconds)));
}

double Quantile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    const double place = fraction * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const std::size_t above = std::min(below + 1, values.size() - 1);
    return std::lerp(values[below], values[above], place - static_cast<double>(below));
}

Result MeasureOnce(const Row& row, int width, int height, const Settings& settings) {
    Result result = {&row, width, height, {}, 0, ""};
    SetProcessor(Variants().back().processor);
    std::mt19937 random;
    std::vector<int> repeats, order;
    std::vector<std::unique_ptr<Scene>> scenes;  // kept, so that each lies in memory of its own
    for (int place = 0; place < Scene::kPlaces; ++place) {
        scenes.push_back(std::make_unique<Scene>(row, width, height, place));
        Scene& scene = *scenes.back();
        result.answer = Run(row, scene);
        if (result.answer) return result;
        const std::vector<Competitor> competitors = Competitors(row, scene);
        if (place == 0) {
            result.fault = FindFault(competitors, row, scene);
            if (!result.fault.empty()) return result;
            for (const Competitor& c : competitors) {
                result.series.push_back({c.name, c.kind, c.calls, {}});
                repeats.push_back(Repeats(c.run, settings.sample_seconds));
            }
            order.resize(competitors.size());
            std::iota(order.begin(), order.end(), 0);
        }
        for (const Competitor& c : competitors) c.run();
        for (int round = 0; round < settings.rounds / Scene::kPlaces; ++round) {
            std::shuffle(order.begin(), order.end(), random);
            for (const int i : order)
                result.series[i].ns.push_back(1e9 * Time(competitors[i].run, repeats[i]) /
                                              repeats[i] / width / height);
        }
    }
    return result;
}

// How unsteady the plain copy was, which is nobody's achievement: its median in times of its best.
double Unrest(const Result& result) {
    const auto copy = std::find_if(result.series.begin(), result.series.end(),
                                   [](const Series& s) { return s.kind == Kind::kCopy; });
    return copy == result.series.end() ? 0 : copy->Median() / copy->Best();
}

}  // namespace

double Series::Median() const {
    return Quantile(ns, 0.5);
}

double Series::Best() const {
    return *std::min_element(ns.begin(), ns.end());
}

Result Measure(const Row& row, int width, int height, const Settings& settings) {
    constexpr double kCalm = 1.15;
    Result calmest = MeasureOnce(row, width, height, settings);
    for (int i = 1; i < settings.attempts && Unrest(calmest) > kCalm; ++i) {
        Result again = MeasureOnce(row, width, height, settings);
        if (Unrest(again) < Unrest(calmest)) calmest = std::move(again);
    }
    return calmest;
}

std::vector<std::string> VariantNames() {
    std::vector<std::string> names;
    for (const Variant& variant : Variants()) names.push_back(variant.name);
    return names;
}

const Series& Widest(const Result& result) {
    return *std::find_if(result.series.rbegin(), result.series.rend(),
                         [](const Series& s) { return s.kind == Kind::kOurs; });
}

std::vector<const Series*> Judged(const Result& result) {
    std::vector<const Series*> judged;
    for (const Series& s : result.series)
        if (s.kind == Kind::kOurs && (s.name == "avx2" || !judged.empty())) judged.push_back(&s);
    if (judged.empty()) judged.push_back(&Widest(result));
    return judged;
}

// On 64 bits the compiler gives plain kernels SSE2 registers, which are wider than those of MMX. No
// processor there is without SSE2, so that nothing chooses MMX.
bool IsNarrower(const Series& variant, const Series& than) {
    return sizeof(void*) == 4 || variant.name != "plain" || than.name != "mmx";
}

std::vector<Setback> Setbacks(const Result& result) {
    constexpr double kNoise = 1.05;
    std::vector<Setback> setbacks;
    for (const Series& variant : result.series) {
        Setback worst = {&variant, nullptr, kNoise};
        for (const Series* narrower = result.series.data(); narrower != &variant; ++narrower) {
            if (!IsNarrower(*narrower, variant)) continue;
            const double ratio =
                std::min(variant.Median() / narrower->Median(), variant.Best() / narrower->Best());
            if (ratio > worst.ratio) worst = {&variant, narrower, ratio};
        }
        if (variant.kind == Kind::kOurs && worst.narrower) setbacks.push_back(worst);
    }
    return setbacks;
}

std::optional<Ratio> RatioTo(Kind kind, const Series& ours, const Result& result) {
    const Series* fastest = nullptr;
    for (const Series& s : result.series)
        if (s.kind == kind && (!fastest || s.Median() < fastest->Median())) fastest = &s;
    if (!fastest) return std::nullopt;

    std::vector<double> ratios(fastest->ns.size());
    std::transform(fastest->ns.begin(), fastest->ns.end(), ours.ns.begin(), ratios.begin(),
                   [](double theirs, double mine) { return theirs / mine; });
    return Ratio{fastest->name, Quantile(ratios, 0.5), Quantile(ratios, 0.25)};
}

std::optional<Verdict> Judge(const Series& ours, const Result& result) {
    constexpr double kTolerance = 0.95;
    const Target& target = result.row->target;
    const double wanted = target.At(result.width, result.height);
    if (sizeof(void*) < 8 || wanted == 0) return std::nullopt;

    std::optional<Ratio> best;
    const auto consider = [&](Kind kind) {
        const std::optional<Ratio> ratio = RatioTo(kind, ours, result);
        if (ratio && (!best || ratio->lower_quartile > best->lower_quartile)) best = ratio;
    };
    if (target.reference != Reference::kCopy) consider(Kind::kPeer);
    if (target.reference != Reference::kPeer) consider(Kind::kCopy);
    if (!best) return std::nullopt;
    return Verdict{wanted, *best, best->lower_quartile >= kTolerance * wanted};
}

}  // namespace pxb::bench
