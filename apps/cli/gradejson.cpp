#include "apps/cli/gradejson.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

std::vector<SectionRecords> ReadSections(CDbRec& database, CTestingDataArray sections) {
    std::vector<SectionRecords> chosen;
    const CHostFiles::CLookOnce look(HostFiles());
    for (_TESTING_DATA& section : sections) {
        SectionRecords& entry = chosen.emplace_back();
        entry.Section = std::move(section);
        if (!database.ReadRecords(entry.Section.ID, entry.Records, true)) {
            throw std::runtime_error("the records can't be read");
        }
    }
    return chosen;
}

nlohmann::ordered_json GradeToJson(const SectionGrade& grade) {
    nlohmann::ordered_json json = {{"ID", grade.Section.ID},
                                   {"TestingName", grade.Section.TestingName},
                                   {"StartWell", grade.Section.StartWell},
                                   {"EndWell", grade.Section.EndWell}};
    for (const EvaluationField& field : EvaluationFields()) {
        std::visit(
            [&](auto member) {
                const auto& value = grade.Result.*member;
                if constexpr (std::is_same_v<std::decay_t<decltype(value)>, float>) {
                    json[field.Name] = NumberToJson(static_cast<double>(value));
                } else {
                    json[field.Name] = value;
                }
            },
            field.Member);
    }
    return json;
}
