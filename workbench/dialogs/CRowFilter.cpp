#include "workbench/dialogs/CRowFilter.h"

#include <QLineEdit>
#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "bulk/dialogs/CFilterBar.h"
#include "check/CCheckRun.h"
#include "check/places.h"
#include "check/waivers.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int MessageRecordsToo = 3933;
constexpr int MessageSections = 3934;

}  // namespace

CRowFilter::CRowFilter(CDlgProAtrrib& window, CFilterBar& bar) : m_window(window), m_bar(bar) {
    bar.hide();
    bar.OnQuery = [this] { Find(); };
    bar.OnNext = [this](bool back) { Next(back); };
    bar.OnClose = [this] { Close(); };
    bar.OnDown = [this] { m_window.SectionList().setFocus(); };
    m_rows.AskFindings = [this] {
        CQueryRows::Findings found;
        CRecExport& database = *m_window.Session().Database();
        const CWaitCursor wait;
        if (const auto findings = CheckProject(database, {})) {
            FindingPlaces places = PlacesOf(*findings, CWaivers(database.Path()));
            found = {std::move(places.Sections), std::move(places.Records)};
        }
        return found;
    };
}

bool CRowFilter::IsOpen() const {
    return !m_bar.isHidden();
}

bool CRowFilter::FiltersRecords() const {
    return IsOpen() && m_bar.Asked().IsOfRecords();
}

void CRowFilter::Open() {
    m_bar.show();
    m_bar.Line().selectAll();
    Find();
    m_window.FocusAfter = &m_bar.Line();
}

void CRowFilter::Close() {
    m_bar.hide();
    Find();
    m_window.SectionList().setFocus();
    m_window.ShowPanels();
}

CQueryRows* CRowFilter::Rows() {
    CRecExport* const database = m_window.Session().Database();
    if (database == nullptr) {
        m_read = false;
        return nullptr;
    }
    if (!m_read || database->Path() != m_project || database->ChangeCount() != m_state) {
        m_project = database->Path();
        m_state = database->ChangeCount();
        m_read = m_rows.Read(*database);
    }
    return m_read ? &m_rows : nullptr;
}

CDlgBulkEdit::Choice CRowFilter::Chosen() {
    CDlgBulkEdit::Choice choice;
    const bool filtered = IsOpen() && !m_bar.Asked().IsEmpty();
    const std::set<std::int32_t> sections(m_hits.Sections.begin(), m_hits.Sections.end());
    for (const _TESTING_DATA& section : m_rows.Sections()) {
        if (!filtered || sections.contains(section.ID)) {
            choice.Sections.push_back(section.ID);
        }
    }
    choice.Records = m_hits.Records;
    if (!FiltersRecords()) {
        choice.Records.clear();
        for (const CQueryRows::Pair& pair : m_rows.All()) {
            if (!filtered || sections.contains(pair.Section->ID)) {
                choice.Records.push_back(pair.Record->ID);
            }
        }
    }
    const std::vector<QueryTerm>& terms = m_bar.Asked().Terms;
    choice.RecordsFirst = filtered && std::any_of(terms.begin(), terms.end(),
                                                  [](const QueryTerm& term) { return term.OfRecord; });
    // Without a filter nobody has said which rows are meant.
    if (filtered) {
        choice.Ticked = choice.RecordsFirst ? choice.Records : choice.Sections;
    } else if (const _TESTING_DATA* section = m_window.SectionList().SelectedSection()) {
        choice.Ticked = {section->ID};
    }
    return choice;
}

void CRowFilter::Follow() {
    if (IsOpen()) {
        Find();
    }
}

void CRowFilter::Apply(CListCtrl& records) const {
    if (FiltersRecords()) {
        records.ShowOnly({m_hits.Records.begin(), m_hits.Records.end()});
    } else {
        records.ShowAll();
    }
}

void CRowFilter::Find() {
    m_hits = {};
    CQueryRows* const rows = IsOpen() && !m_bar.Asked().IsEmpty() ? Rows() : nullptr;
    if (rows == nullptr) {
        m_window.SectionList().ShowAll();
        m_window.DefectList().ShowAll();
        m_bar.ShowCount({});
    } else {
        m_hits = rows->Find(m_bar.Asked());
        m_window.SectionList().ShowOnly({m_hits.Sections.begin(), m_hits.Sections.end()});
        Apply(m_window.DefectList());
        const std::string sections = FormatInt(static_cast<std::int64_t>(m_hits.Sections.size()));
        m_bar.ShowCount(
            m_bar.Asked().IsOfRecords()
                ? FillText(LoadMessage(MessageRecordsToo),
                           {sections, FormatInt(static_cast<std::int64_t>(m_hits.Records.size()))})
                : FillText(LoadMessage(MessageSections), {sections}));
    }
    if (OnFound) {
        OnFound();
    }
}

// Each section that is hit, with its records that are.
std::vector<CRowFilter::Place> CRowFilter::Places() {
    std::vector<Place> places;
    auto record = m_hits.Records.begin();
    const bool ofRecords = m_bar.Asked().IsOfRecords();
    for (const std::int32_t section : m_hits.Sections) {
        const std::size_t before = places.size();
        const auto isHere = [&] {
            const _REC_DATA* data = m_rows.FindRecord(*record);
            return data != nullptr && data->TestingID == section;
        };
        for (; ofRecords && record != m_hits.Records.end() && isHere(); ++record) {
            places.emplace_back(section, *record);
        }
        if (places.size() == before) {
            places.emplace_back(section, -1);
        }
    }
    return places;
}

void CRowFilter::Next(bool back) {
    const std::vector<Place> places = Places();
    if (places.empty()) {
        return;
    }
    std::unordered_map<std::int32_t, int> order;
    for (const _TESTING_DATA& section : m_rows.Sections()) {
        order.emplace(section.ID, static_cast<int>(order.size()));
    }
    const _TESTING_DATA* section = m_window.SectionList().SelectedSection();
    const _REC_DATA* record = m_window.DefectList().SelectedRecord();
    const int stands = section == nullptr ? -1 : order[section->ID];
    const auto count = static_cast<int>(places.size());
    const auto now =
        std::find(places.begin(), places.end(),
                  Place(section == nullptr ? -1 : section->ID, record == nullptr ? -1 : record->ID));
    int next = 0;
    if (now != places.end()) {
        next = static_cast<int>(now - places.begin()) + (back ? -1 : 1);
    } else {
        // From where he stands, which isn't a hit.
        const auto behind = std::find_if(places.begin(), places.end(),
                                         [&](const Place& place) { return order[place.first] >= stands; });
        next = static_cast<int>(behind - places.begin()) - (back ? 1 : 0);
    }
    const Place place = places[static_cast<std::size_t>((next + count) % count)];
    m_window.Asked = [this, place] { m_window.Session().GoTo(place.first, place.second); };
    m_window.Run(CommandAskedLook);
}
