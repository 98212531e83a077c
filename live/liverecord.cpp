#include "live/liverecord.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "shell/CLiveChannel.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t VideoAt = 0;
constexpr std::size_t PictureAt = 261;
constexpr std::size_t PathBytes = 260;
constexpr std::size_t TimeAt = 528;
constexpr std::size_t StartAt = 536;
constexpr std::size_t EndAt = 540;
constexpr std::size_t TextsAt = 552;
constexpr std::size_t TextBytes = 64;

static_assert(std::endian::native == std::endian::little, "numbers stand in the block as they do in memory");

constexpr std::array<std::string _TESTING_DATA::*, 11> SectionFields = {
    &_TESTING_DATA::TaskIndex,    &_TESTING_DATA::TestingDirection,
    &_TESTING_DATA::TaskName,     &_TESTING_DATA::Location,
    &_TESTING_DATA::StartWell,    &_TESTING_DATA::EndWell,
    &_TESTING_DATA::PipeType,     &_TESTING_DATA::PipeMaterial,
    &_TESTING_DATA::PipeDiameter, &_TESTING_DATA::TestingCompany,
    &_TESTING_DATA::Tester};

std::string TextAt(std::string_view block, std::size_t at, std::size_t most) {
    const std::string_view field = block.substr(at, most);
    return Utf8FromGbk(field.substr(0, field.find('\0')));
}

std::string PathAt(std::string_view block, std::size_t at) {
    std::string path = TextAt(block, at, PathBytes);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

template <class Number>
Number NumberAt(std::string_view block, std::size_t at) {
    Number number = 0;
    std::memcpy(&number, block.data() + at, sizeof number);
    return std::isfinite(number) ? number : 0;
}

void PutText(std::string& block, std::size_t at, std::size_t most, std::string_view text) {
    const std::string bytes =
        GbkPrefix(text, most).empty() ? std::string() : GbkFromUtf8(GbkPrefix(text, most));
    std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace

LiveRecord ReadLiveRecord(std::string_view block) {
    LiveRecord record;
    if (block.size() < CLiveChannel::RecordBytes) {
        return record;
    }
    record.Video = PathAt(block, VideoAt);
    record.Picture = PathAt(block, PictureAt);
    record.PictureTime = NumberAt<double>(block, TimeAt);
    record.Start = NumberAt<float>(block, StartAt);
    record.End = NumberAt<float>(block, EndAt);
    for (std::size_t i = 0; i < record.Texts.size(); ++i) {
        record.Texts[i] = TextAt(block, TextsAt + i * TextBytes, TextBytes);
    }
    return record;
}

_TESTING_DATA SectionOf(const LiveRecord& record) {
    _TESTING_DATA section;
    for (std::size_t i = 0; i < SectionFields.size(); ++i) {
        section.*SectionFields[i] = record.Texts[i];
    }
    section.VideoFileList = record.Video;
    return section;
}

std::string MakeLiveBlock(const LiveRecord& record) {
    std::string block(CLiveChannel::RecordBytes, '\0');
    PutText(block, VideoAt, PathBytes, record.Video);
    PutText(block, PictureAt, PathBytes, record.Picture);
    std::memcpy(block.data() + TimeAt, &record.PictureTime, sizeof record.PictureTime);
    std::memcpy(block.data() + StartAt, &record.Start, sizeof record.Start);
    std::memcpy(block.data() + EndAt, &record.End, sizeof record.End);
    for (std::size_t i = 0; i < record.Texts.size(); ++i) {
        PutText(block, TextsAt + i * TextBytes, TextBytes, record.Texts[i]);
    }
    return block;
}

std::string LiveAnswer(const _REC_DATA& record, std::string_view defectName) {
    constexpr int FirstLabel = 2420;
    const std::string values[] = {record.DefectCode,
                                  std::string(defectName),
                                  FormatInt(record.DefectLevel),
                                  FormatNumber(static_cast<double>(record.DistanceStart), 2),
                                  FormatNumber(static_cast<double>(record.DistanceEnd), 2),
                                  record.Comment};
    std::string text = "\r\n\r\n";
    int label = FirstLabel;
    for (const std::string& value : values) {
        text += LoadMessage(label++) + value + "\r\n\r\n";
    }
    return GbkFromUtf8(text);
}
