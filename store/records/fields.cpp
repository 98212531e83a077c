#include "store/records/fields.h"

namespace {

using Project = FieldOf<_PRO_DATA>;
using Section = FieldOf<_TESTING_DATA>;
using Rec = FieldOf<_REC_DATA>;

const Project ProjectTable[] = {
    {"CriterionName", &_PRO_DATA::CriterionName, FieldRole::Once},
    {"ProjectName", &_PRO_DATA::ProjectName, FieldRole::Value},
    {"Comment", &_PRO_DATA::Comment, FieldRole::Value},
    {"GpsX", &_PRO_DATA::GpsX, FieldRole::Value},
    {"GpsY", &_PRO_DATA::GpsY, FieldRole::Value},
    {"ProjectIndex", &_PRO_DATA::ProjectIndex, FieldRole::Value},
    {"StandardIndex", &_PRO_DATA::StandardIndex, FieldRole::Value},
    {"Location", &_PRO_DATA::Location, FieldRole::Value},
    {"CreateTime", &_PRO_DATA::CreateTime, FieldRole::Stamp},
};

const Section SectionTable[] = {
    {"ID", &_TESTING_DATA::ID, FieldRole::Key},
    {"TestingOrder", &_TESTING_DATA::TestingOrder, FieldRole::Once},
    {"TestingName", &_TESTING_DATA::TestingName, FieldRole::Value},
    {"Comment", &_TESTING_DATA::Comment, FieldRole::Value},
    {"GpsXStart", &_TESTING_DATA::GpsXStart, FieldRole::Value},
    {"GpsYStart", &_TESTING_DATA::GpsYStart, FieldRole::Value},
    {"GpsXEnd", &_TESTING_DATA::GpsXEnd, FieldRole::Value},
    {"GpsYEnd", &_TESTING_DATA::GpsYEnd, FieldRole::Value},
    {"DistanceStart", &_TESTING_DATA::DistanceStart, FieldRole::Value},
    {"DistanceEnd", &_TESTING_DATA::DistanceEnd, FieldRole::Value},
    {"VideoFileList", &_TESTING_DATA::VideoFileList, FieldRole::Value},
    {"CreateTime", &_TESTING_DATA::CreateTime, FieldRole::Stamp},
    {"TaskIndex", &_TESTING_DATA::TaskIndex, FieldRole::Value},
    {"TestingDirection", &_TESTING_DATA::TestingDirection, FieldRole::Value},
    {"TaskName", &_TESTING_DATA::TaskName, FieldRole::Value},
    {"Location", &_TESTING_DATA::Location, FieldRole::Value},
    {"StartWell", &_TESTING_DATA::StartWell, FieldRole::Value},
    {"EndWell", &_TESTING_DATA::EndWell, FieldRole::Value},
    {"PipeType", &_TESTING_DATA::PipeType, FieldRole::Value},
    {"PipeMaterial", &_TESTING_DATA::PipeMaterial, FieldRole::Value},
    {"DepthStart", &_TESTING_DATA::DepthStart, FieldRole::Value},
    {"DepthEnd", &_TESTING_DATA::DepthEnd, FieldRole::Value},
    {"ManholeDepth", &_TESTING_DATA::ManholeDepth, FieldRole::Value},
    {"PipeLength", &_TESTING_DATA::PipeLength, FieldRole::Value},
    {"DetectionLength", &_TESTING_DATA::DetectionLength, FieldRole::Value},
    {"LayingTime", &_TESTING_DATA::LayingTime, FieldRole::Value},
    {"EngineeringUnits", &_TESTING_DATA::EngineeringUnits, FieldRole::Value},
    {"PipeDiameter", &_TESTING_DATA::PipeDiameter, FieldRole::Value},
    {"TestingCompany", &_TESTING_DATA::TestingCompany, FieldRole::Value},
    {"Tester", &_TESTING_DATA::Tester, FieldRole::Value},
    {"TestingDate", &_TESTING_DATA::TestingDate, FieldRole::Value},
};

const Rec RecordTable[] = {
    {"ID", &_REC_DATA::ID, FieldRole::Key},
    {"TestingID", &_REC_DATA::TestingID, FieldRole::Once},
    {"DefectCode", &_REC_DATA::DefectCode, FieldRole::Value},
    {"Comment", &_REC_DATA::Comment, FieldRole::Value},
    {"DefectLevel", &_REC_DATA::DefectLevel, FieldRole::Value},
    {"DistanceStart", &_REC_DATA::DistanceStart, FieldRole::Value},
    {"DistanceEnd", &_REC_DATA::DistanceEnd, FieldRole::Value},
    {"DirectionStart", &_REC_DATA::DirectionStart, FieldRole::Value},
    {"DirectionEnd", &_REC_DATA::DirectionEnd, FieldRole::Value},
    {"Video", &_REC_DATA::Video, FieldRole::Once},
    {"GpsX", &_REC_DATA::GpsX, FieldRole::Value},
    {"GpsY", &_REC_DATA::GpsY, FieldRole::Value},
    {"JcjNo", &_REC_DATA::JcjNo, FieldRole::Value},
    {"JcjType", &_REC_DATA::JcjType, FieldRole::Value},
    {"JcjUnderRoad", &_REC_DATA::JcjUnderRoad, FieldRole::Value},
    {"JcjMaterial", &_REC_DATA::JcjMaterial, FieldRole::Value},
    {"JcjCoverMaterial", &_REC_DATA::JcjCoverMaterial, FieldRole::Value},
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
