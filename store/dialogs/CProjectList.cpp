#include "store/dialogs/CProjectList.h"

#include <algorithm>

#include "shell/dialogs/qttext.h"
#include "shell/numbers.h"
#include "shell/paths.h"

void CProjectList::CreateColumns() {
    InsertColumn(MessageText(2430), 200);
    InsertColumn(MessageText(2431), 120);
    InsertColumn(MessageText(2432), 50);
    InsertColumn(MessageText(2433), 130);
}

void CProjectList::FillProjects(std::string_view folder, std::string_view excludedPath) {
    DeleteAllRows();
    m_listing = {};
    ProjectListing listing;
    ::FillProjects(folder, excludedPath, listing);  // boxes may show, and the list be drawn, meanwhile
    m_listing = std::move(listing);
    ResetRows(std::vector<std::int32_t>(m_listing.Rows.size()));
}

const _PRO_DATA* CProjectList::ProjectAt(int row) const {
    return row >= 0 && row < m_listing.Projects.GetSize() ? &m_listing.Projects[row] : nullptr;
}

void CProjectList::DeleteRow(int row) {
    if (row >= 0 && row < RowCount()) {
        m_listing.Projects.RemoveAt(row);
        m_listing.Rows.erase(m_listing.Rows.begin() + row);
        CListCtrl::DeleteRow(row);
    }
}

const ProjectRow* CProjectList::RowAt(int row) const {
    return row >= 0 && row < RowCount() ? &m_listing.Rows[static_cast<std::size_t>(row)] : nullptr;
}

void CProjectList::SelectProject(std::string_view path) {
    const auto row = std::ranges::find(m_listing.Rows, path, &ProjectRow::OwnPath);
    if (row != m_listing.Rows.end()) {
        SelectRow(static_cast<int>(row - m_listing.Rows.begin()));
    }
}

std::string CProjectList::UnreadableFile() const {
    for (int i = 0; i < m_listing.Projects.GetSize(); ++i) {
        const std::string& path = m_listing.Projects[i].ProjectPath;
        const auto row = static_cast<std::size_t>(i);
        if (row >= m_listing.Rows.size() || m_listing.Rows[row].OwnPath != path) {
            return GetFileName(path);
        }
    }
    return {};
}

std::string CProjectList::MakeText(int row, int column) const {
    if (row < 0 || row >= static_cast<int>(m_listing.Rows.size())) {
        return {};
    }
    const ProjectRow& project = m_listing.Rows[static_cast<std::size_t>(row)];
    switch (column) {
        case 0:
            return project.ProjectName;
        case 1:
            return project.CriterionName;
        case 2:
            return FormatInt(project.RecordCount);
        default:
            return project.CreateTime;
    }
}
