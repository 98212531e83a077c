#include "check/places.h"

#include "check/rules.h"
#include "check/waivers.h"

FindingPlaces PlacesOf(const std::vector<CheckFinding>& findings, const CWaivers& waivers) {
    FindingPlaces places;
    for (const CheckFinding& finding : findings) {
        if (SeverityOf(finding.Rule) == CheckSeverity::Hint || waivers.ReasonOf(finding) != nullptr) {
            continue;
        }
        if (finding.Section >= 0) {
            places.Sections.insert(finding.Section);
        }
        if (finding.Record >= 0) {
            places.Records.insert(finding.Record);
        }
    }
    return places;
}
