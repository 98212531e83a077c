#include "store/records/records.h"

#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/paths.h"
#include "shell/seams.h"
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
    // Paths of other programs may have either separator; the copy never leaves its folder.
    std::string source(path);
    std::replace(source.begin(), source.end(), '/', '\\');
    (void)HostFiles().MirrorFile(source, GetReportImageFolder().append(GetFileName(source)));
    Pictures.Add({std::string(path), time});
}

_PIC_DATA _REC_DATA::PictureAt(int index) const {
    return index < Pictures.GetSize() ? Pictures[index] : _PIC_DATA();
}
