#include "store/recordpictures.h"

#include <algorithm>
#include <string>

#include "shell/CFileMirror.h"
#include "shell/CHostFiles.h"
#include "shell/paths.h"
#include "shell/seams.h"

void CopyForReports(std::string_view picture) {
    if (picture.empty()) {
        return;
    }
    // Paths of other programs may have either separator; the copy never leaves its folder.
    std::string source(picture);
    std::replace(source.begin(), source.end(), '/', '\\');
    (void)HostFiles().Mirror().Copy(source, GetReportImageFolder().append(GetFileName(source)));
}

void AddPicture(_REC_DATA& record, std::string_view path, double time) {
    CopyForReports(path);
    record.AddPicture(path, time);
}
