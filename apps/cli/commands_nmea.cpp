// What the text of a satellite receiver comes to.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "geo/nmea/CNmeaReceiver.h"
#include "shell/numbers.h"
#include "store/recordjson.h"

int RunNmea(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--block", "--offset"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    const std::string& file = arguments.Places().front();
    const std::string bytes = ReadInput(PathArgument(context, file), file);
    const std::optional<std::int64_t> block = ParseWholeInt(arguments.Get("--block").value_or("1024"));
    const std::optional<std::int64_t> offset =
        ParseWholeInt(arguments.Get("--offset").value_or(FormatInt(CNmeaReceiver::UnknownOffset)));
    if (!block || *block < 1 || !offset || *offset < -48 || *offset > 48) {
        throw CUsageError("--block is a number from 1 on, --offset one of hours");
    }
    CNmeaReceiver receiver(static_cast<int>(*offset));
    nlohmann::ordered_json fixes = nlohmann::ordered_json::array();
    GpsFix last;
    receiver.OnSentence = [&] {
        if (receiver.Fix() != last) {
            last = receiver.Fix();
            fixes.push_back({{"line", receiver.Lines()},
                             {"longitude", NumberToJson(last.Longitude)},
                             {"latitude", NumberToJson(last.Latitude)},
                             {"time", last.Time}});
        }
    };
    const auto step = static_cast<std::size_t>(*block);
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        receiver.Receive(std::string_view(bytes).substr(at, step));
    }
    const GpsFix& fix = receiver.Fix();
    context.Out << JsonText({{"longitude", NumberToJson(fix.Longitude)},
                             {"latitude", NumberToJson(fix.Latitude)},
                             {"satellites", fix.Satellites},
                             {"altitude", fix.Altitude},
                             {"time", fix.Time},
                             {"receiveBuffer", receiver.Buffer()},
                             {"fixes", std::move(fixes)}})
                << '\n';
    return 0;
}
