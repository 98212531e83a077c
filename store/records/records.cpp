#include "store/records/records.h"

#include "shell/textcodec.h"

namespace {

constexpr std::string_view NormalPipeCode = "GDZC";

}  // namespace

bool _REC_DATA::IsJG() const {
    return EqualNoCase(DefectType, "JG");
}

bool _REC_DATA::IsGN() const {
    return EqualNoCase(DefectType, "GN");
}

bool _REC_DATA::IsJCJ() const {
    return EqualNoCase(DefectType, "JCJ");
}

bool _REC_DATA::IsPipeNormal() const {
    return (IsJG() || IsGN()) && EqualNoCase(DefectCode, NormalPipeCode);
}

void _REC_DATA::AddPicture(std::string_view path, double time) {
    if (path.empty()) {
        return;
    }
    Pictures.Add({std::string(path), time});
}

_PIC_DATA _REC_DATA::PictureAt(int index) const {
    return index < Pictures.GetSize() ? Pictures[index] : _PIC_DATA();
}
