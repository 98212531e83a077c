// The counter of the cable, read out of the pictures of a video.
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "shell/numbers.h"
#include "store/recordjson.h"
#include "workbench/distance/counterreader.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr int ExitNoCounter = 3;

std::optional<PictureBox> ReadRegion(const CArguments& arguments) {
    const std::optional<std::string> text = arguments.Get("--region");
    if (!text) {
        return std::nullopt;
    }
    std::vector<int> numbers;
    std::string_view rest = *text;
    while (true) {
        const std::size_t comma = rest.find(',');
        const auto number = ParseWholeInt(rest.substr(0, comma));
        if (!number || *number < 0 || *number > 100'000) {
            throw CUsageError("--region needs X,Y,W,H in pixels instead of " + *text);
        }
        numbers.push_back(static_cast<int>(*number));
        if (comma == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    if (numbers.size() != 4 || numbers[2] == 0 || numbers[3] == 0) {
        throw CUsageError("--region needs X,Y,W,H in pixels instead of " + *text);
    }
    return PictureBox{numbers[0], numbers[1], numbers[2], numbers[3]};
}

const char* UnitText(CounterUnit unit) {
    return unit == CounterUnit::Feet ? "ft" : "m";
}

// TIME=DISTANCE: what the picture shows at that second. Its decimals count.
std::vector<KnownValue> ReadKnown(const CArguments& arguments) {
    std::vector<KnownValue> known;
    for (const std::string& text : arguments.GetAll("--value")) {
        const std::size_t equals = text.find('=');
        const std::string_view shown = std::string_view(text).substr(std::min(equals, text.size() - 1) + 1);
        const auto time = ParseWholeDouble(std::string_view(text).substr(0, equals));
        const auto distance = ParseWholeDouble(shown);
        const std::size_t point = shown.find('.');
        if (equals == std::string::npos || !time || !distance || *time < 0 || *distance < 0 ||
            point == std::string_view::npos || shown.size() - point - 1 < 1 || shown.size() - point - 1 > 3) {
            throw CUsageError("--value needs SECONDS=DISTANCE, as in 12.4=3.52, instead of " + text);
        }
        known.push_back({*time, *distance, static_cast<int>(shown.size() - point - 1)});
    }
    return known;
}

std::optional<CounterUnit> ReadUnit(const CArguments& arguments) {
    const std::optional<std::string> unit = arguments.Get("--unit");
    if (unit && *unit != "m" && *unit != "ft") {
        throw CUsageError("--unit is m or ft instead of " + *unit);
    }
    return unit ? std::optional(*unit == "m" ? CounterUnit::Metres : CounterUnit::Feet) : std::nullopt;
}

void PrintJson(std::ostream& out, const CounterTrack& track) {
    Json readings = Json::array();
    for (const CounterReading& reading : track.Readings) {
        readings.push_back({{"time", NumberToJson(reading.Time)},
                            {"distance", NumberToJson(reading.Distance)},
                            {"sure", reading.Sure}});
    }
    Json halts = Json::array();
    for (const CounterHalt& halt : track.Halts) {
        halts.push_back({{"from", NumberToJson(halt.From)},
                         {"to", NumberToJson(halt.To)},
                         {"distance", NumberToJson(halt.Distance)}});
    }
    const PictureBox& box = track.Region;
    out << Json{{"region", {box.X, box.Y, box.Width, box.Height}},
                {"unit", UnitText(track.Unit)},
                {"track", std::move(readings)},
                {"halts", std::move(halts)}}
               .dump(1)
        << "\n";
}

void Print(std::ostream& out, const CounterTrack& track) {
    for (const CounterReading& reading : track.Readings) {
        out << FormatFixed(reading.Time, 2) << " s  " << FormatFixed(reading.Distance, track.Decimals) << " "
            << UnitText(track.Unit) << (reading.Sure ? "" : "  (not sure)") << "\n";
    }
    for (const CounterHalt& halt : track.Halts) {
        out << "halt at " << FormatFixed(halt.Distance, track.Decimals) << " " << UnitText(track.Unit)
            << " from " << FormatFixed(halt.From, 1) << " s to " << FormatFixed(halt.To, 1) << " s\n";
    }
}

}  // namespace

int RunDistance(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--region", "--value*", "--unit"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    const std::string& video = arguments.Places()[0];
    const CounterResult result = ReadCounter(
        PathArgument(context, video), {ReadRegion(arguments), ReadKnown(arguments), ReadUnit(arguments)});
    switch (result.Outcome) {
        case CounterOutcome::NoFile:
            throw std::runtime_error(video + " can't be read, or is no file");
        case CounterOutcome::NoVideo:
            throw std::runtime_error(video + " holds no video that can be decoded");
        case CounterOutcome::None:
        case CounterOutcome::Stopped:
            context.Err << video << ": no counter that can be read for certain\n";
            return ExitNoCounter;
        case CounterOutcome::Found:
            break;
    }
    if (arguments.Has("--json")) {
        PrintJson(context.Out, result.Track);
    } else {
        Print(context.Out, result.Track);
    }
    return 0;
}
