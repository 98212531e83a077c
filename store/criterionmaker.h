// Makes criterion databases, from which projects are created, out of JSON:
//
//   {"criterionName": "...",
//    "defects": [{"code": "PL", "name": "...", "type": "JG",
//                 "levels": [{"level": 1, "description": "...", "score": 0.5}]}]}
//
// The order of the defects is the order of all lists of the program. Other members are notes and ignored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct CriterionLevel {
    int Level = 0;  // 1 to 4
    std::string Description;
    double Score = 0.0;
};

struct CriterionDefect {
    std::string Code;
    std::string Name;
    std::string Type;  // "JG", "GN" or "JCJ"
    std::vector<CriterionLevel> Levels;
};

struct Criterion {
    std::string Name;
    std::vector<CriterionDefect> Defects;
};

// Throws std::runtime_error that tells what is wrong and where.
Criterion ParseCriterion(std::string_view json);

// The file appears complete or not at all; an existing one is replaced. Throws std::runtime_error.
void WriteCriterionFile(const Criterion& criterion, const std::string& hostPath);
