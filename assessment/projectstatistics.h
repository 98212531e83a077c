// What a report says about the sections of a project as a whole: a row for each, how many stand at which
// level, and the numbers of its summary sentences. Nothing here knows where the texts end up.
//
// Tables are flat lists of texts, row after row, as the reports read them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "assessment/sectiongrades.h"

// Columns of a row of SectionRows, by evaluator.
inline constexpr std::size_t FullRowWidth = 17;
inline constexpr std::size_t GuangzhouRowWidth = 15;
inline constexpr std::size_t ShanghaiRowWidth = 14;  // the soil parameter isn't shown, though it counts

struct ProjectSummary {
    int Sections = 0;
    int WithRecords = 0;         // sections that have any record, also one that isn't scored
    int StructuralSections = 0;  // with structural defects, and perhaps functional ones
    int FunctionalSections = 0;  // with functional defects only
    // Always 0: a section with both counts as a structural one.
    int BothSections = 0;
    std::uint32_t SumJG = 0;  // scored defects
    std::uint32_t SumGN = 0;

    // Sections with records of which none is scored. One without any record is counted nowhere.
    int NoDefectSections() const {
        return WithRecords - (StructuralSections + FunctionalSections - BothSections);
    }
};

struct ProjectStatistics {
    // The number of rows, then for each section FullRowWidth texts: name, manholes, diameter, length,
    // material, and for each class mean, largest score, level, density, index and what to do. A class
    // without scored defects shows "-".
    std::vector<std::string> SectionRows;
    // The number of rows, then for each section six: name, manholes, and for each class the level of its
    // index and the number of its merged defects.
    std::vector<std::string> ShortRows;
    // Ten shares of the number of sections: structural levels from best to worst, no structural defect;
    // the same for the functional ones.
    std::vector<std::string> LevelCountRows;
    // The whole length, then for each level of each class number of sections, length, share of the length.
    std::vector<std::string> LevelLengthRows;
    ProjectSummary Summary;
};

// Of sections under full scoring.
ProjectStatistics MakeProjectStatistics(const std::vector<SectionGrade>& grades);

// SectionRows of groups under density scoring: the number of rows, then the rows.
std::vector<std::string> MakeGroupRowsGZ(const std::vector<SectionGrade>& groups);
std::vector<std::string> MakeGroupRowsSH(const std::vector<SectionGrade>& groups);
