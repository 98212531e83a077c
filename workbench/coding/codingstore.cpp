#include "workbench/coding/codingstore.h"

#include <algorithm>

#include "defects/CRecordPictures.h"
#include "defects/defectform.h"
#include "defects/recordchanges.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"
#include "workbench/coding/codingmessages.h"
#include "workbench/coding/openruns.h"

_REC_DATA CodedRecord(const CodingMeaning& meaning) {
    _REC_DATA record;
    record.DefectCode = meaning.Code;
    record.DefectLevel = static_cast<std::uint8_t>(meaning.Grade);
    record.Comment = meaning.Comment;
    record.DistanceStart = meaning.Start.value_or(0.0F);
    record.DistanceEnd = meaning.End.value_or(record.DistanceStart);
    record.DirectionStart = static_cast<std::uint8_t>(meaning.ClockStart);
    record.DirectionEnd = static_cast<std::uint8_t>(meaning.ClockEnd);
    return record;
}

std::optional<std::int32_t> StoreCoded(CDbRec& database, const _TESTING_DATA& section, std::string_view video,
                                       double seconds, const CodingMeaning& meaning) {
    _REC_DATA record = CodedRecord(meaning);
    record.Video = video;
    StandIn(section, record);
    CRecordPictures pictures(record);
    if (!pictures.AddFrame(video, seconds, static_cast<float>(seconds), MessageNoFrame,
                           CRecordPictures::Twin::AtOnce)) {
        return std::nullopt;
    }
    CompleteRecord(database, section.ID, record);
    const CDbStep step(database, StepAddRecord);
    // The mark first: a mark without a record says nothing, a run without one would be lost from sight.
    if (meaning.Mark == CodingLine::Run::Begins) {
        try {
            MarkOpenRun(database, record);
        } catch (const CDbError& error) {
            Prompts().ShowMessage(CodingMessage::RunNotKept,
                                  LoadMessage(CodingMessage::RunNotKept) + "\r\n" + error.what());
            pictures.TakeBack();
            return std::nullopt;
        }
    }
    if (!StoreRecord(database, record, pictures, Storing::New)) {
        pictures.TakeBack();
        return std::nullopt;
    }
    return database.LastInsertId();
}

std::optional<std::int32_t> EndCodedRun(CDbRec& database, const CodingMeaning& meaning) {
    CRecDataArray records;
    if (!database.LookAtRecords(-1, records, false)) {
        return std::nullopt;
    }
    const auto run = std::find_if(records.begin(), records.end(),
                                  [&](const _REC_DATA& record) { return record.ID == meaning.EndedRun; });
    if (run == records.end() || !meaning.End) {
        return std::nullopt;
    }
    run->DistanceEnd = *meaning.End;
    const CDbStep step(database, StepChangeRecord);
    if (!database.UpdateRecord(*run)) {
        return std::nullopt;
    }
    if (run->DistanceEnd <= run->DistanceStart) {
        try {
            ForgetOpenRun(database, *run);
        } catch (const CDbError& error) {
            Prompts().ShowMessage(CodingMessage::RunNotKept,
                                  LoadMessage(CodingMessage::RunNotKept) + "\r\n" + error.what());
        }
    }
    return run->ID;
}

std::string CodeAndGrade(const CodingMeaning& meaning) {
    return meaning.Code.empty() || meaning.Grade == 0 ? std::string()
                                                      : meaning.Code + FormatInt(meaning.Grade);
}
