#include "store/records/fields.h"

namespace {

using Project = FieldOf<_PRO_DATA>;
using Section = FieldOf<_TESTING_DATA>;
using Rec = FieldOf<_REC_DATA>;

const Project ProjectTable[] = {
    {"CriterionName", &_PRO_DATA::CriterionName, false},
    {"ProjectName", &_PRO_DATA::ProjectName, true},
    {"Comment", &_PRO_DATA::Comment, true},
    {"GpsX", &_PRO_DATA::GpsX, true},
    {"GpsY", &_PRO_DATA::GpsY, true},
    {"ProjectIndex", &_PRO_DATA::ProjectIndex, true},
    {"StandardIndex", &_PRO_DATA::StandardIndex, true},
    {"Location", &_PRO_DATA::Location, true},
    {"CreateTime", &_PRO_DATA::CreateTime, false},
};

const Section SectionTable[] = {
    {"ID", &_TESTING_DATA::ID, false},
    {"TestingOrder", &_TESTING_DATA::TestingOrder, false},
    {"TestingName", &_TESTING_DATA::TestingName, true},
    {"Comment", &_TESTING_DATA::Comment, true},
    {"DistanceStart", &_TESTING_DATA::DistanceStart, true},
    {"DistanceEnd", &_TESTING_DATA::DistanceEnd, true},
    {"GpsXStart", &_TESTING_DATA::GpsXStart, true},
    {"GpsYStart", &_TESTING_DATA::GpsYStart, true},
    {"GpsXEnd", &_TESTING_DATA::GpsXEnd, true},
    {"GpsYEnd", &_TESTING_DATA::GpsYEnd, true},
    {"TaskIndex", &_TESTING_DATA::TaskIndex, true},
    {"TestingDirection", &_TESTING_DATA::TestingDirection, true},
    {"TaskName", &_TESTING_DATA::TaskName, true},
    {"Location", &_TESTING_DATA::Location, true},
    {"StartWell", &_TESTING_DATA::StartWell, true},
    {"EndWell", &_TESTING_DATA::EndWell, true},
    {"PipeType", &_TESTING_DATA::PipeType, true},
    {"PipeMaterial", &_TESTING_DATA::PipeMaterial, true},
    {"DepthStart", &_TESTING_DATA::DepthStart, true},
    {"DepthEnd", &_TESTING_DATA::DepthEnd, true},
    {"ManholeDepth", &_TESTING_DATA::ManholeDepth, true},
    {"PipeLength", &_TESTING_DATA::PipeLength, true},
    {"DetectionLength", &_TESTING_DATA::DetectionLength, true},
    {"LayingTime", &_TESTING_DATA::LayingTime, true},
    {"EngineeringUnits", &_TESTING_DATA::EngineeringUnits, true},
    {"PipeDiameter", &_TESTING_DATA::PipeDiameter, true},
    {"TestingCompany", &_TESTING_DATA::TestingCompany, true},
    {"Tester", &_TESTING_DATA::Tester, true},
    {"TestingDate", &_TESTING_DATA::TestingDate, true},
    {"CreateTime", &_TESTING_DATA::CreateTime, false},
    {"VideoFileList", &_TESTING_DATA::VideoFileList, true},
};

const Rec RecordTable[] = {
    {"ID", &_REC_DATA::ID, false},
    {"TestingID", &_REC_DATA::TestingID, false},
    {"DefectCode", &_REC_DATA::DefectCode, true},
    {"Comment", &_REC_DATA::Comment, true},
    {"DefectLevel", &_REC_DATA::DefectLevel, true},
    {"DistanceStart", &_REC_DATA::DistanceStart, true},
    {"DistanceEnd", &_REC_DATA::DistanceEnd, true},
    {"DirectionStart", &_REC_DATA::DirectionStart, true},
    {"DirectionEnd", &_REC_DATA::DirectionEnd, true},
    {"Video", &_REC_DATA::Video, false},
    {"GpsX", &_REC_DATA::GpsX, true},
    {"GpsY", &_REC_DATA::GpsY, true},
    {"JcjNo", &_REC_DATA::JcjNo, true},
    {"JcjType", &_REC_DATA::JcjType, true},
    {"JcjUnderRoad", &_REC_DATA::JcjUnderRoad, true},
    {"JcjMaterial", &_REC_DATA::JcjMaterial, true},
    {"JcjCoverMaterial", &_REC_DATA::JcjCoverMaterial, true},
};

}  // namespace

std::span<const FieldOf<_PRO_DATA>> ProjectFields() {
    return ProjectTable;
}

std::span<const FieldOf<_TESTING_DATA>> TestingFields() {
    return SectionTable;
}

std::span<const FieldOf<_REC_DATA>> RecordFields() {
    return RecordTable;
}
