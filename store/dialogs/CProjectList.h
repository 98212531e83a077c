// The projects of a folder, in the order of their file names.
#pragma once

#include <string_view>

#include "lists/CListCtrl.h"
#include "store/catalogue.h"

class CProjectList : public CListCtrl {
public:
    using CListCtrl::CListCtrl;

    void CreateColumns();
    // Files that can't be read show their messages and have no row.
    void FillProjects(std::string_view folder, std::string_view excludedPath);
    // The element at the row's index, which behind a file that can't be read isn't the one that the row shows
    // (see ProjectListing). Null if there is none.
    const _PRO_DATA* ProjectAt(int row) const;
    const _PRO_DATA* SelectedProject() const { return ProjectAt(SelectedRow()); }
    // The row that shows the file; nothing where there is none.
    void SelectProject(std::string_view path);
    // With the element at its index.
    void DeleteRow(int row) override;
    // The name of the first file without a row; empty while every row stands for what it shows.
    std::string UnreadableFile() const;
    // Path texts of all of them.
    std::vector<std::string> Unreadable() const { return UnreadableFiles(m_listing); }
    // What the row shows. Null if there is none.
    const ProjectRow* RowAt(int row) const;

protected:
    std::string MakeText(int row, int column) const override;

private:
    ProjectListing m_listing;
};
