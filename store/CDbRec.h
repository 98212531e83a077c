// The project database: every statement on the tables `Attrib`, `Testing` and `Record`. Each operation
// catches the engine's error at its outermost level, shows its one numbered message, and returns false;
// what was read until then stays in the output. The numbers stand with the operations.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "store/CDbCriterion.h"
#include "store/records/records.h"

class CDbRec : public CDbCriterion {
public:
    ~CDbRec() override;
    void Close() override;

    // 2005. Without a row the record stays as it was, and the result is true.
    bool ReadAttrib(_PRO_DATA& out);
    // 2006. `stampCreateTime` moves the creation time to now. CriterionName is never written.
    bool WriteAttrib(const _PRO_DATA& in, bool stampCreateTime);

    // 2013. In the project's order; equal places in ID order.
    bool ReadTestings(CTestingDataArray& out);
    // The first section between these manholes, compared without case. Throws CDbError: the operation
    // that asks has the message.
    bool FindTestingByWells(std::string_view start, std::string_view end, _TESTING_DATA* out = nullptr);
    // 2013. One behind the place of the first row, which needn't be the last place: ties are legal.
    bool GetNextTestingOrder(std::int32_t& out);
    // 2007. ID, TestingOrder and CreateTime of `in` are ignored.
    bool AddTesting(const _TESTING_DATA& in);
    // 2008. TestingOrder and CreateTime stay.
    bool UpdateTesting(const _TESTING_DATA& in);
    // 2008.
    bool SetTestingOrder(std::int32_t id, std::int32_t order);
    // 2009, 2010. The section and its records; files on disk stay. Only `in.ID` counts.
    bool DeleteTesting(const _TESTING_DATA& in);
    // 2019, 2020. Places the section's records on the line between its manholes.
    bool RecalcRecordGps(std::int32_t id);

    // 2017. Records of a section in ID order; below 0: of the whole project. Every read brings the
    // pictures' copies in the report image folder up to date. `withEvaluate` fills the scores.
    bool ReadRecords(std::int32_t testingId, CRecDataArray& out, bool withEvaluate);
    // The same without a message, and without a look at the pictures' files: for what shows figures only,
    // and goes through whole projects in the background.
    bool LookAtRecords(std::int32_t testingId, CRecDataArray& out, bool withEvaluate);
    // The same of the whole project in pieces: the next `most` records behind this ID.
    bool LookAtRecordsFrom(std::int32_t afterId, int most, CRecDataArray& out, bool withEvaluate);
    // 2018 and -1 on failure. Below 0: of the whole project.
    std::int32_t CountRecords(std::int32_t testingId);
    // 2018. Of all sections at once, by section ID; one without records is missing.
    bool CountRecordsBySection(std::unordered_map<std::int32_t, std::int32_t>& counts);
    // 2800, 2801, 2014. A section holds either the one record "GDZC" (nothing wrong) or defects, never
    // both; `in.DefectType` must be filled for that to be seen.
    bool AddRecord(const _REC_DATA& in);
    // 2015. Video, TestingID and CreateTime stay; the rule of AddRecord isn't asked.
    bool UpdateRecord(const _REC_DATA& in);
    // 2015. The section's own IDs anew: `ids` are those of its records in the order in which they are to
    // stand, and get the same IDs rising. All else of a row travels with it. False, with nothing changed,
    // also if these aren't its records.
    bool SetRecordOrder(std::int32_t testingId, const std::vector<std::int32_t>& ids);
    // 2016. Picture files stay.
    bool DeleteRecord(std::int32_t id);

    // Group of a code without regard to case; empty for an unknown one.
    std::string GetDefectType(std::string_view code) const;
    int FindDefectIndex(std::string_view code) const;  // -1 if unknown

private:
    // What AddRecord knows of a section while a batch lasts, so that two thousand records of an import
    // don't read and copy everything two thousand times. Nobody else can change the file meanwhile.
    struct SectionState {
        bool Empty = true;
        bool HasPipeNormal = false;
        std::vector<std::string> NewPictures;  // of rows added since the section was read
    };

    static _TESTING_DATA ReadTestingRow(CDbCursor& row);
    enum class Pictures { Copied, Left };
    bool ReadRows(const std::string& statement, CRecDataArray& out, bool withEvaluate, Pictures pictures,
                  const _REC_DATA*& reading);
    void ReadRecordRow(CDbCursor& row, _REC_DATA& record, Pictures pictures) const;
    static void ReadPictures(CDbCursor& row, _REC_DATA& record, Pictures pictures);
    float ReadEvaluate(const _REC_DATA& record);
    bool LookAtSection(std::int32_t testingId, SectionState& state);
    void RememberAdded(const _REC_DATA& record, SectionState state);

    std::uint64_t m_stateSerial = 0;
    std::unordered_map<std::int32_t, SectionState> m_states;
    // Scores by code and grade. The criterion of an open project can't change under it.
    std::map<std::pair<std::string, int>, float> m_evaluates;
};
