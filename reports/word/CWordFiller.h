// Fills the tables of a report's template, list by list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/CDocx.h"
#include "reports/reportlists.h"
#include "reports/word/CExportWord.h"

class CWordFiller {
public:
    CWordFiller(CDocx& document, const ReportLists& lists, const StatusLine& status)
        : m_document(document), m_lists(lists), m_status(status) {}

    // See CExportWord::FillDocument. Throws COoxmlError.
    void Fill(const std::string& mapPicture, bool fullData);

private:
    // Where a list that begins with its number of rows goes: the cell of its first text.
    struct Place {
        const char* Bookmark;
        int Row;
        int Column;
        bool Numbered;  // the rows get numbers in column 1, and are added as they come
    };

    void FillRows(const Place& place, const std::vector<std::string>& list);
    void FillLevels();
    void FillMap(const std::string& mapPicture);
    void FillLabels();
    void FillSections();
    void FillDefectTypes();
    void FillDefects();
    void FillSectionForms();
    void FillSectionForm(CDocxTable& form, int number, int defects);
    void FillDefectForms();
    void FillWells();

    // Two a row from `firstRow` on, in that row's form; each with its caption and its number.
    void FillPictures(CDocxTable& table, int firstRow, const std::vector<std::string>& pictures);
    // The picture, or a line instead that tells which one is missing. `caption` may be empty.
    void PutPicture(CDocxTable& table, int row, int column, const std::string& path,
                    const std::string& caption);

    // The next text of ProjectStrings; empty behind its end.
    const std::string& Next();
    int NextCount();
    void TellProgress();

    CDocx& m_document;
    const ReportLists& m_lists;
    const StatusLine& m_status;
    std::size_t m_position = 0;  // in ProjectStrings
    int m_told = -1;             // percent
};
