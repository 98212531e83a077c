// What the live window does, without the window: takes records in, finds their section, stores rows, and
// knows whom to answer.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "live/CWaitingRecords.h"
#include "live/liverecord.h"
#include "shell/CLiveChannel.h"
#include "store/CDbRec.h"

class CLiveSession {
public:
    // The channel outlives the session. The list file lies in the work folder, or without one in the program
    // folder.
    explicit CLiveSession(CLiveChannel& channel);

    // False, with nothing of it kept, if it can't be put on the list. The record in hand, if there is one,
    // goes back to the list. The position is that of this moment.
    bool Take(std::string_view block, LiveSender sender, double longitude, double latitude);
    // The record in hand.
    const LiveRecord& Record() const { return m_record; }
    bool HasRecord() const { return m_id != 0; }
    double Longitude() const { return m_longitude; }
    double Latitude() const { return m_latitude; }

    // Records on the list without the one in hand.
    int WaitingCount() const;
    // The oldest of them becomes the one in hand; false if there is none. One that turns out to be stored
    // already goes from the list.
    bool TakeUpNext();

    // Asks for a section between the record's manholes; without one `make` shows the new section and says
    // whether it is to be added. False with the project closed: 2427 another video, 2426, 2013, and those of
    // the database.
    bool OpenProject(const std::string& path, const std::function<bool(_TESTING_DATA&)>& make);
    bool IsOpen() const { return m_database.IsOpen(); }
    CDbRec& Database() { return m_database; }
    std::int32_t SectionId() const { return m_section; }
    const _PRO_DATA& Project() const { return m_project; }
    void Close();

    // 2417, told by whoever asks: distances as they stood before the window was read.
    static bool AreInOrder(float start, float end) { return !(start > end); }
    // The row of the record in hand, which is answered and no longer in hand then. False, with nothing
    // changed, if it can't be stored: its message was shown.
    bool Store(_REC_DATA record, std::string_view defectName);

private:
    bool FindSection(const LiveRecord& record, const std::function<bool(_TESTING_DATA&)>& make);
    // Whether a record that was being stored when a former run ended has its row.
    bool IsStored(const WaitingRecord& waiting);
    bool HasRow(CDbRec& database, const WaitingRecord& waiting) const;
    void PutInHand(const WaitingRecord& waiting);

    CLiveChannel& m_channel;
    CWaitingRecords m_waiting;
    std::map<std::int64_t, LiveSender> m_senders;  // of this run
    CDbRec m_database;
    _PRO_DATA m_project;
    std::int32_t m_section = -1;
    std::int64_t m_id = 0;  // of the record in hand; 0: none
    LiveRecord m_record;
    double m_longitude = 0;
    double m_latitude = 0;
};
