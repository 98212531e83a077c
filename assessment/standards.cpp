#include "assessment/standards.h"

#include <string>

#include "shell/language.h"
#include "shell/textcodec.h"

namespace {

struct NamedStandard {
    int Message;
    ScoringRoute Route;
};

// The first match counts.
constexpr NamedStandard NamedStandards[] = {
    {2150, ScoringRoute::National},
    {2700, ScoringRoute::ListsOnly},
    {2151, ScoringRoute::Guangzhou},
    {2152, ScoringRoute::Shanghai},
};

constexpr std::string_view ChongqingName = "重庆规范";

constexpr ParameterRow NationalK[] = {{2351, 10.0F}, {2352, 6.0F}, {2353, 3.0F}, {2354, 0.0F}};
constexpr ParameterRow NationalT[] = {{2355, 0.0F},  {2356, 10.0F}, {2357, 10.0F}, {2358, 8.0F},
                                      {2359, 6.0F},  {2360, 10.0F}, {2361, 8.0F},  {2362, 6.0F},
                                      {2363, 10.0F}, {2364, 8.0F},  {2365, 8.0F}};
constexpr ParameterRow GuangzhouK[] = {{2300, 10.0F}, {2301, 6.0F}, {2302, 3.0F}, {2303, 0.0F}};
constexpr ParameterRow GuangzhouT[] = {{2304, 0.0F}, {2305, 10.0F}};
constexpr ParameterRow ShanghaiK[] = {{2372, 10.0F}, {2373, 6.0F}, {2374, 3.0F}, {2375, 0.0F}};
constexpr ParameterRow ShanghaiT[] = {{2376, 0.0F}, {2377, 10.0F}};

}  // namespace

ScoringRoute FindScoringRoute(std::string_view criterionName) {
    // Without its language file the program knows none of the names: then all texts are empty, and a
    // project without a standard would be taken for one of the national standard.
    if (criterionName.empty()) {
        return ScoringRoute::None;
    }
    for (const NamedStandard& standard : NamedStandards) {
        if (EqualNoCase(criterionName, LoadMessage(standard.Message))) {
            return standard.Route;
        }
    }
    return criterionName == ChongqingName ? ScoringRoute::Chongqing : ScoringRoute::None;
}

bool HasEvaluator(ScoringRoute route) {
    return route != ScoringRoute::None && route != ScoringRoute::ListsOnly;
}

bool IsDensityScoring(ScoringRoute route) {
    return route == ScoringRoute::Guangzhou || route == ScoringRoute::Shanghai;
}

std::span<const ParameterRow> ParametersK(ScoringRoute route) {
    switch (route) {
        case ScoringRoute::None:
            return {};
        case ScoringRoute::Guangzhou:
            return GuangzhouK;
        case ScoringRoute::Shanghai:
            return ShanghaiK;
        case ScoringRoute::National:
        case ScoringRoute::ListsOnly:
        case ScoringRoute::Chongqing:
            return NationalK;
    }
    return {};
}

std::span<const ParameterRow> ParametersT(ScoringRoute route) {
    switch (route) {
        case ScoringRoute::None:
            return {};
        case ScoringRoute::Guangzhou:
            return GuangzhouT;
        case ScoringRoute::Shanghai:
            return ShanghaiT;
        case ScoringRoute::National:
        case ScoringRoute::ListsOnly:
        case ScoringRoute::Chongqing:
            return NationalT;
    }
    return {};
}
