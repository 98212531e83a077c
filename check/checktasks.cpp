#include "check/checktasks.h"

#include <algorithm>

namespace {

constexpr std::size_t SectionsAPiece = 40;

}  // namespace

void AddForEachSection(const CCheckSnapshot& snapshot, CheckTasks& tasks,
                       const std::function<void(const SectionRecords&, CFindings&)>& check) {
    for (std::size_t first = 0; first < snapshot.Sections.size(); first += SectionsAPiece) {
        tasks.push_back([&snapshot, check, first](CFindings& findings) {
            const std::size_t end = std::min(first + SectionsAPiece, snapshot.Sections.size());
            for (std::size_t i = first; i < end; ++i) {
                check(snapshot.Sections[i], findings);
            }
        });
    }
}

bool IsDefect(const _REC_DATA& record) {
    return !record.IsJCJ() && !record.IsPipeNormal();
}
