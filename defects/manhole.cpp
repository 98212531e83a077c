#include "defects/manhole.h"

#include <array>

#include "shell/textcodec.h"

namespace {

constexpr std::array<ManholeCode, 6> Codes{{
    {"JCJ_JGJZQS", "(JCJ_JGJZQS)井盖井座缺失", "井盖井座缺失"},
    {"JCJ_JNYZW", "(JCJ_JNYZW)井内有杂物", "井内有杂物"},
    {"JCJ_JNYQS", "(JCJ_JNYQS)井内有缺损", "井内有缺损"},
    {"JCJ_JGKTCHAX", "(JCJ_JGKTCHAX)井盖框突出或凹陷", "井盖框突出或凹陷"},
    {"JCJ_JSZWTTYCJ", "(JCJ_JSZWTTYCJ)井室周围填土有沉降", "井室周围填土有沉降"},
    {"JCJ_ZC", "(JCJ_ZC)检查井正常", "检查井正常"},
}};

constexpr std::array<const char*, 12> Types{"雨水井", "检查井", "连接暗井", "溢流井", "跌水井", "水封井",
                                            "冲洗井", "沉泥井", "闸门井",   "潮门井", "倒虹管", "其它"};
constexpr std::array<const char*, 2> YesNo{"是", "否"};
constexpr std::array<const char*, 3> Materials{"砖砌", "塑料", "钢筋混凝土"};
constexpr std::array<const char*, 3> CoverMaterials{"铸铁", "塑料", "钢筋混凝土"};

const std::array<ManholeList, 4> Lists{{
    {ManholeControl::Type, 1004, 3196, &_REC_DATA::JcjType, Types},
    {ManholeControl::UnderRoad, 1020, 3197, &_REC_DATA::JcjUnderRoad, YesNo},
    {ManholeControl::Material, 1023, 3198, &_REC_DATA::JcjMaterial, Materials},
    {ManholeControl::CoverMaterial, 1028, 3199, &_REC_DATA::JcjCoverMaterial, CoverMaterials},
}};

}  // namespace

std::span<const ManholeCode> ManholeCodes() {
    return Codes;
}

int FindManholeCode(std::string_view code) {
    for (std::size_t i = 0; i < Codes.size(); ++i) {
        if (EqualNoCase(Codes[i].Code, code)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::span<const ManholeList> ManholeLists() {
    return Lists;
}
