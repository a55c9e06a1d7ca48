// The results as JSON, written and read back.
#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "bench/machine.h"
#include "bench/report.h"

namespace pxb::bench {
namespace {

using nlohmann::json;

json RatioToJson(const std::optional<Ratio>& ratio) {
    if (!ratio) return nullptr;
    return {{"against", ratio->against},
            {"median", ratio->median},
            {"lower_quartile", ratio->lower_quartile}};
}

json SeriesToJson(const Series& series) {
    constexpr const char* kKinds[] = {"ours", "library", "copy"};
    return {{"name", series.name},
            {"kind", kKinds[static_cast<int>(series.kind)]},
            {"calls", series.calls},
            {"median_ns_per_pixel", series.Median()},
            {"best_ns_per_pixel", series.Best()}};
}

json ResultToJson(const Result& result) {
    json row = {{"name", result.row->name},
                {"width", result.width},
                {"height", result.height},
                {"competitors", json::array()}};
    if (result.answer) row["answer"] = result.answer;
    if (!result.fault.empty()) row["fault"] = result.fault;
    if (result.series.empty()) return row;
    for (const Series& series : result.series) row["competitors"].push_back(SeriesToJson(series));
    row["ratio_to_library"] = RatioToJson(RatioTo(Kind::kPeer, Widest(result), result));
    row["ratio_to_copy"] = RatioToJson(RatioTo(Kind::kCopy, Widest(result), result));
    for (const Setback& setback : Setbacks(result))
        row["setbacks"].push_back({{"variant", setback.variant->name},
                                   {"narrower", setback.narrower->name},
                                   {"ratio", setback.ratio}});
    for (const Series* ours : Judged(result))
        if (const std::optional<Verdict> verdict = Judge(*ours, result))
            row["targets"].push_back({{"variant", ours->name},
                                      {"target", verdict->target},
                                      {"ratio", RatioToJson(verdict->ratio)},
                                      {"reached", verdict->reached}});
    return row;
}

}  // namespace

void WriteJson(const std::string& path, std::span<const Result> results, const Settings& settings) {
    json rows = json::array();
    for (const Result& result : results) rows.push_back(ResultToJson(result));
    const json all = {{"processor", ProcessorName()},
                      {"bits", 8 * sizeof(void*)},
                      {"compiler", CompilerName()},
                      {"rounds", settings.rounds},
                      {"rows", rows}};
    std::ofstream file(path);
    file << all.dump(2) << '\n';
    file.close();
    if (!file) throw std::runtime_error(path + ": cannot be written");
}

void Baseline::Read(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error(path + ": cannot be read");
    try {
        const json all = json::parse(file);
        bits = all.at("bits");
        for (const json& row : all.at("rows"))
            for (const json& series : row.at("competitors")) {
                const double ns = series.at("best_ns_per_pixel");
                const std::string name = RowName(row.at("name"), row.at("width"), row.at("height"));
                double& known = best.try_emplace({name, series.at("name")}, ns).first->second;
                known = std::min(known, ns);
            }
    } catch (const json::exception& error) {
        throw std::runtime_error(path + ": not results of this program: " + error.what());
    }
}

}  // namespace pxb::bench
