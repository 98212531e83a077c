// The condition of one pipe section (or of a group of sections) from its defect records: two ratings
// that don't know each other, structural ("JG") and functional ("GN"), each brought down to a value, a
// repair index and a level with its description.
//
// Nothing of this is stored. It is worked out anew for each report, so that a changed record, parameter
// or standard needs no recalculation.
//
// All arithmetic is in 32-bit floats, in the order in which it is written: levels have sharp edges, and
// a report made today must show the level that an earlier one showed.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "store/records/records.h"

struct Derivation;

struct _EVALUATE_DATA {
    std::uint32_t countJG = 0;  // structural defects scored, before merging
    std::uint32_t countGN = 0;
    float paramK = 0.0F;  // importance of the region, as picked
    float paramE = 0.0F;  // from the diameter
    float paramT = 0.0F;  // soil, as picked
    float avgJG = 0.0F;   // full scoring: mean score; density scoring: score times metres per 100 m
    float maxJG = 0.0F;   // largest score
    float conditionJG = 0.0F;
    float smJG = 0.0F;  // structural density; full scoring only
    float riJG = 0.0F;  // repair index
    float avgGN = 0.0F;
    float maxGN = 0.0F;
    float conditionGN = 0.0F;
    float smGN = 0.0F;
    float riGN = 0.0F;            // maintenance index
    std::int32_t maxGradeJG = 0;  // highest DefectLevel
    std::int32_t maxGradeGN = 0;
    std::string levelJG;  // of conditionJG; full scoring only, as is its description
    std::string levelDescJG;
    std::string riLevelJG;       // of riJG
    std::string EvaluatethisJG;  // description of riJG
    std::string levelGN;
    std::string levelDescGN;
    std::string riLevelGN;
    std::string EvaluatethisGN;
    std::uint32_t mergedJG = 0;  // structural defects after merging; full scoring only
    std::uint32_t mergedGN = 0;
};

// The records must carry group, code, grade, both distances and score. Their order counts: merging goes
// through them as the database delivered them.
//
// L: length in metres. D: diameter in millimetres. K, T: parameters of region and soil, as picked.
// Whatever `result` held is overwritten. Always 1; the callers' convention has 0 for a failed read.
int EvaluateSection(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T);
// Density scoring, with the descriptions of the Guangzhou and of the Shanghai standard.
int EvaluateSectionGZ(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T);
int EvaluateSectionSH(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T);
// The same, and how the result came about.
int ExplainSection(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                   Derivation& derivation);
int ExplainSectionGZ(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                     Derivation& derivation);
int ExplainSectionSH(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                     Derivation& derivation);

// The level, best to worst, of a repair or maintenance index under full scoring.
std::string FullIndexLevel(float index);

struct EvaluationField {
    const char* Name;
    std::variant<std::uint32_t _EVALUATE_DATA::*, std::int32_t _EVALUATE_DATA::*, float _EVALUATE_DATA::*,
                 std::string _EVALUATE_DATA::*>
        Member;
};

// In the order of the result, for whoever prints it by name.
std::span<const EvaluationField> EvaluationFields();
