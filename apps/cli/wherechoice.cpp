#include "apps/cli/wherechoice.h"

#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "check/CCheckRun.h"
#include "check/places.h"
#include "check/waivers.h"
#include "store/CDbRec.h"

CQueryRows::Hits ChosenRows(CDbRec& database, const CArguments& arguments, CQueryRows& rows) {
    const Query query = ParseQuery(arguments.Get("--where").value_or(std::string()));
    if (!query.Unclear.empty()) {
        throw CUsageError("--where can't be understood at " + query.Unclear.front());
    }
    if (!rows.Read(database)) {
        throw std::runtime_error("the project can't be read");
    }
    rows.AskFindings = [&database] {
        const auto findings = CheckProject(database, {});
        if (!findings) {
            throw std::runtime_error("the project can't be checked");
        }
        const FindingPlaces places = PlacesOf(*findings, CWaivers(database.Path()));
        return CQueryRows::Findings{places.Sections, places.Records};
    };
    return rows.Find(query);
}
