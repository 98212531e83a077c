#include "live/CLiveSession.h"

#include <algorithm>

#include "shell/CPrompts.h"
#include "shell/CSilentPrompts.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"

namespace {

constexpr const char* ListName = "live-records.txt";

std::string ListPath() {
    const std::string work = GetWorkFolder();
    return (work.empty() ? GetAppFolder() : work) + ListName;
}

}  // namespace

CLiveSession::CLiveSession(CLiveChannel& channel) : m_channel(channel), m_waiting(ListPath()) {}

void CLiveSession::PutInHand(const WaitingRecord& waiting) {
    m_id = waiting.Id;
    m_record = ReadLiveRecord(waiting.Block);
    m_longitude = waiting.Longitude;
    m_latitude = waiting.Latitude;
}

bool CLiveSession::Take(std::string_view block, LiveSender sender, double longitude, double latitude) {
    const std::optional<std::int64_t> id = m_waiting.Add(block, longitude, latitude);
    if (!id) {
        return false;
    }
    m_senders[*id] = sender;
    PutInHand(*m_waiting.Find(*id));
    return true;
}

int CLiveSession::WaitingCount() const {
    return static_cast<int>(m_waiting.All().size()) - (m_id == 0 ? 0 : 1);
}

bool CLiveSession::TakeUpNext() {
    for (std::size_t i = 0; i < m_waiting.All().size();) {
        const WaitingRecord waiting = m_waiting.All()[i];
        if (waiting.Id == m_id) {
            ++i;
        } else if (IsStored(waiting)) {
            m_waiting.Remove(waiting.Id);
        } else {
            PutInHand(waiting);
            return true;
        }
    }
    return false;
}

bool CLiveSession::HasRow(CDbRec& database, const WaitingRecord& waiting) const {
    const LiveRecord record = ReadLiveRecord(waiting.Block);
    CRecDataArray rows;
    if (!database.ReadRecords(waiting.Section, rows, false)) {
        return false;
    }
    return std::any_of(rows.begin(), rows.end(), [&](const _REC_DATA& row) {
        return EqualNoCase(row.GetPicture1(), record.Picture) && EqualNoCase(row.Video, record.Video) &&
               std::abs(row.GetPicTime1() - record.PictureTime) < 0.001;
    });
}

bool CLiveSession::IsStored(const WaitingRecord& waiting) {
    if (waiting.Project.empty()) {
        return false;
    }
    if (m_database.IsOpen() && EqualNoCase(m_database.Path(), waiting.Project)) {
        return HasRow(m_database, waiting);
    }
    CSilentPrompts silent;
    const CSeamScope scope({.Prompts = &silent});
    CDbRec database;
    return database.OpenDatabase(waiting.Project, CDbPassword, CDbBase::Access::Shared) &&
           HasRow(database, waiting);
}

void CLiveSession::Close() {
    m_database.Close();
    m_project = {};
    m_section = -1;
}

bool CLiveSession::OpenProject(const std::string& path, const std::function<bool(_TESTING_DATA&)>& make) {
    // A box of the way may let a further record in; the section is that of the record with which it began.
    const LiveRecord record = m_record;
    if (m_database.OpenDatabase(path, CDbPassword) && FindSection(record, make) &&
        m_database.ReadAttrib(m_project)) {
        return true;
    }
    Close();
    return false;
}

bool CLiveSession::FindSection(const LiveRecord& record, const std::function<bool(_TESTING_DATA&)>& make) {
    _TESTING_DATA section = SectionOf(record);
    const std::string start = section.StartWell;
    const std::string end = section.EndWell;
    try {
        _TESTING_DATA found;
        if (m_database.FindTestingByWells(start, end, &found)) {
            if (!EqualNoCase(found.FirstVideo(), record.Video)) {
                ShowMessage(2427);
                return false;
            }
            m_section = found.ID;
            return true;
        }
        section.GpsXStart = m_longitude;
        section.GpsYStart = m_latitude;
        if (!make(section) || !m_database.AddTesting(section)) {
            return false;
        }
        // Its manholes may have been changed there.
        if (!m_database.FindTestingByWells(section.StartWell, section.EndWell, &found)) {
            ShowMessage(2426);
            return false;
        }
        m_section = found.ID;
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2013, error);
        return false;
    }
}

bool CLiveSession::Store(_REC_DATA record, std::string_view defectName) {
    const std::int64_t id = m_id;
    record.ID = -1;
    record.TestingID = m_section;
    record.DefectType = m_database.GetDefectType(record.DefectCode);
    (void)m_waiting.Storing(id, m_database.Path(), m_section);
    if (!m_database.AddRecord(record)) {
        return false;
    }
    m_waiting.Remove(id);
    const auto sender = m_senders.find(id);
    if (sender != m_senders.end()) {
        (void)m_channel.Answer(sender->second, LiveAnswer(record, defectName));
        m_senders.erase(sender);
    }
    if (m_id == id) {
        m_id = 0;
        m_record = {};
    }
    return true;
}
