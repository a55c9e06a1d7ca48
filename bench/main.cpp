// pxb_bench: times the library, variant by variant, beside other libraries.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "bench/machine.h"
#include "bench/report.h"
#include "bench/scale_rows.h"

namespace pxb::bench {
namespace {

// The widths of the middle ones differ in how they end: 854 is no multiple of any register.
const std::vector<std::string> kSizes = {"320x240", "832x480", "854x480", "1920x1080", "3840x2160"};

struct Options {
    std::vector<std::string> rows;
    std::vector<std::string> sizes;
    int rounds = 0;  // 0: as `quick` says
    bool quick = false, quality = false;
    std::string json_path;
    std::vector<std::string> compare_paths;
};

Size ParseSize(const std::string& text) {
    Size size = {0, 0};
    int end = 0;
    constexpr int kLargest = 16384;
    if (std::sscanf(text.c_str(), "%5dx%5d%n", &size.width, &size.height, &end) != 2 ||
        text[end] != '\0' || size.width < 2 || size.height < 2 || size.width > kLargest ||
        size.height > kLargest || size.width % 2 != 0 || size.height % 2 != 0)
        throw std::runtime_error("--sizes " + text +
                                 ": a size is WIDTHxHEIGHT up to 16384, both even");
    return size;
}

bool Contains(const Row& row, const std::string& part) {
    return row.name.find(part) != std::string::npos;
}

std::vector<const Row*> SelectRows(const std::vector<std::string>& parts) {
    for (const std::string& part : parts)
        if (std::none_of(Rows().begin(), Rows().end(),
                         [&](const Row& row) { return Contains(row, part); }))
            throw std::runtime_error("--rows " + part + ": no row has such a name");
    std::vector<const Row*> selected;
    for (const Row& row : Rows())
        if (parts.empty() || std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
                return Contains(row, part);
            }))
            selected.push_back(&row);
    return selected;
}

Settings SettingsFor(const Options& options) {
    const int rounds = options.rounds ? options.rounds : options.quick ? 6 : 21;
    const int whole_places = (rounds + Scene::kPlaces - 1) / Scene::kPlaces * Scene::kPlaces;
    if (options.quick) return {whole_places, 0.5e-3, 1};
    return {whole_places, 2e-3, 4};
}

// Exit status 1 if a competitor does not do its job, which makes its row worthless.
int RunBenchmark(const Options& options) {
    std::vector<Size> sizes;
    for (const std::string& text : options.sizes) sizes.push_back(ParseSize(text));
    const std::vector<const Row*> rows = SelectRows(options.rows);
    Baseline baseline;
    for (const std::string& path : options.compare_paths) baseline.Read(path);
    if (!options.json_path.empty() && !std::ofstream(options.json_path, std::ios::app))
        throw std::runtime_error(options.json_path + ": cannot be written");

    const Settings settings = SettingsFor(options);
    PinThread();
    PrintHead();
    std::vector<Result> results;
    for (const Row* row : rows)
        for (const Size size : SizesOf(*row, sizes)) {
            results.push_back(Measure(*row, size.width, size.height, settings));
            PrintLine(results.back());
            if (results.back().answer) break;
        }
    PrintSummary(results);
    if (!options.json_path.empty()) WriteJson(options.json_path, results, settings);
    if (!options.compare_paths.empty()) PrintComparison(results, baseline);
    return std::any_of(results.begin(), results.end(),
                       [](const Result& result) { return !result.fault.empty(); });
}

int Start(int argc, char** argv) {
    Options options;
    CLI::App app("Times PxbLib, variant by variant, beside other libraries.");
    app.add_option("--rows", options.rows, "Only rows whose name contains one of these")
        ->delimiter(',');
    app.add_option("--sizes", options.sizes,
                   "WIDTHxHEIGHT,... (" + CLI::detail::join(kSizes, ",") + ")")
        ->delimiter(',');
    app.add_option("--rounds", options.rounds, "Rounds, rounded up to a multiple of 3 (21)")
        ->check(CLI::Range(1, 10000));
    app.add_flag("--quick", options.quick, "One size, 6 rounds, shorter samples, one attempt");
    app.add_flag("--quality", options.quality, "Times nothing: how exactly bilinear scaling works");
    app.add_option("--json", options.json_path, "Write the results to this file");
    app.add_option("--compare", options.compare_paths, "Results of another build, from --json")
        ->delimiter(',');
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        return 0;
    }
    if (options.quality) {
        PrintScalingQuality();
        return 0;
    }
    if (options.sizes.empty() && options.quick) options.sizes = {"1920x1080"};
    if (options.sizes.empty()) options.sizes = kSizes;
    return RunBenchmark(options);
}

}  // namespace
}  // namespace pxb::bench

int main(int argc, char** argv) {
    try {
        return pxb::bench::Start(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "pxb_bench: %s\n", error.what());
        return 2;
    }
}
