#include "defects/dialogs/draftpictures.h"

#include <sstream>

#include "defects/CRecordPictures.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/CFormDraft.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/recordpictures.h"

namespace {

// In the draft's values; a path never holds the line ends that separate them.
constexpr const char* PicturesValue = "pictures";
constexpr const char* VideoValue = "video";
constexpr const char* MadeValue = "made";
constexpr int Digits = 3;  // milliseconds

std::vector<std::string> LinesOf(const FormDraft& draft, const char* value) {
    std::vector<std::string> lines;
    const auto found = draft.Values.find(value);
    std::istringstream text(found == draft.Values.end() ? std::string() : found->second);
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

void KeepPictures(CFormDraft& draft, const _REC_DATA& record, const CRecordPictures& pictures) {
    draft.Keep(PicturesValue,
               [&record] {
                   std::string text;
                   for (const _PIC_DATA& picture : record.Pictures) {
                       text += FormatNumber(picture.PicTimeInVideo, Digits) + " " + picture.Picture + "\n";
                   }
                   return text;
               },
               {});
    draft.Keep(VideoValue, [&record] { return record.Video; }, {});
    draft.Keep(MadeValue,
               [&pictures] {
                   std::string text;
                   for (const std::string& path : pictures.Made()) {
                       text += path + "\n";
                   }
                   return text;
               },
               {});
}

void ResumePictures(const FormDraft& draft, _REC_DATA& record, CRecordPictures& pictures) {
    const std::vector<std::string> lines = LinesOf(draft, PicturesValue);
    if (draft.Values.contains(PicturesValue)) {
        record.Pictures.RemoveAll();
    }
    for (const std::string& line : lines) {
        const std::size_t space = line.find(' ');
        if (space != std::string::npos && HostFiles().Exists(line.substr(space + 1))) {
            AddPicture(record, line.substr(space + 1), ParseDouble(line.substr(0, space)));
        }
    }
    if (const auto video = draft.Values.find(VideoValue); video != draft.Values.end()) {
        record.Video = video->second;
    }
    pictures.Adopt(LinesOf(draft, MadeValue));
}
