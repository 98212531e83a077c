#include "reports/word/CWordFiller.h"

#include <algorithm>
#include <optional>

#include "shell/language.h"
#include "shell/numbers.h"

namespace {

constexpr int MessageProgress = 2390;
constexpr int MessageNoMap = 2391;
constexpr int MessagePicture = 2392;
constexpr int MessageNoPicture = 2393;

// Points.
constexpr double PictureWidth = 240.0;
constexpr double PictureHeight = 192.0;

constexpr int FirstDefectRow = 9;  // of a section's form; the row behind the defects heads the pictures
constexpr int WellRowWidth = 8;
constexpr int DefectFormWidth = 7;
constexpr int FormsAPage = 3;

int Int(std::size_t size) {
    return static_cast<int>(size);
}

// "Fig. 3"
std::string Caption(int number) {
    return LoadMessage(MessagePicture) + FormatInt(number);
}

// Adds the pictures of a row to those of its table, and gives the text that refers to them: "Fig. 3,4".
std::string Refer(const std::string& first, const std::string& second, std::vector<std::string>& pictures) {
    std::string reference;
    for (const std::string* picture : {&first, &second}) {
        if (!picture->empty()) {
            pictures.push_back(*picture);
            const int number = Int(pictures.size());
            reference = reference.empty() ? Caption(number) : reference + "," + FormatInt(number);
        }
    }
    return reference;
}

}  // namespace

void CWordFiller::Fill(const std::string& mapPicture, bool fullData) {
    if (fullData) {
        FillRows({"wellDefectTotal", 2, 3, false}, m_lists.WellTotalRows);
        FillRows({"wellDefectList", 2, 2, true}, m_lists.WellDefectRows);
        FillRows({"rILevelTable", 3, 2, true}, m_lists.ShortRows);
        FillLevels();
    }
    FillRows({"tbDefectAssess", 3, 2, true}, m_lists.SectionRows);
    FillMap(mapPicture);
    TellProgress();
    FillLabels();
    FillSections();
    FillDefectTypes();
    FillDefects();
    if (fullData) {
        FillSectionForms();
        FillWells();
    } else {
        FillDefectForms();
    }
}

void CWordFiller::FillRows(const Place& place, const std::vector<std::string>& list) {
    CDocxTable table = m_document.Table(place.Bookmark);
    const int rows = list.empty() ? 0 : ParseInt(list.front());
    if (rows <= 0) {
        return;
    }
    const int columns = (Int(list.size()) - 1) / rows;
    auto text = list.begin() + 1;
    for (int r = 0; r < rows; ++r) {
        const int row = r + place.Row;
        if (place.Numbered) {
            if (r < rows - 1) {
                table.AddRow();
            }
            table.SetCell(row, 1, FormatInt(r + 1));
        }
        for (int c = 0; c < columns; ++c) {
            table.SetCell(row, c + place.Column, *text++);
        }
        table.FinishRow(row);
    }
}

void CWordFiller::FillLevels() {
    CDocxTable shares = m_document.Table("rILevelTotalTable");
    for (int i = 0; i < Int(m_lists.LevelCountRows.size()); ++i) {
        shares.SetCell(i + 2, 3, m_lists.LevelCountRows[static_cast<std::size_t>(i)]);
    }
    CDocxTable lengths = m_document.Table("rILevelTotalLenTable");
    if (m_lists.LevelLengthRows.empty()) {
        return;
    }
    auto text = m_lists.LevelLengthRows.begin();
    lengths.SetCell(2, 2, *text++);
    for (const int first : {4, 9}) {
        for (int row = first; row < first + 4; ++row) {
            for (int column = 3; column <= 5 && text != m_lists.LevelLengthRows.end(); ++column) {
                lengths.SetCell(row, column, *text++);
            }
        }
    }
}

void CWordFiller::FillMap(const std::string& mapPicture) {
    const std::optional<DocxPicture> map =
        mapPicture.empty() ? std::nullopt : m_document.LoadPicture(mapPicture);
    if (map) {
        m_document.ReplacePicture("picMap", *map);
    } else {
        m_document.SetText("picMap", LoadMessage(MessageNoMap));
    }
}

void CWordFiller::FillLabels() {
    std::vector<std::string> labels;
    for (const char* bookmark :
         {"lbProjectName", "lbReportSN", "lbDetectAddress", "lbInspectionDate", "lbCorporation"}) {
        labels.push_back(Next());
        m_document.SetText(bookmark, labels.back());
    }
    TellProgress();
    CDocxTable project = m_document.Table("tblPrjInfo");
    project.SetCell(1, 2, labels[0]);
    project.SetCell(2, 2, labels[2]);
    project.SetCell(6, 2, Next());
    TellProgress();
}

void CWordFiller::FillSections() {
    CDocxTable table = m_document.Table("OLE_LINK1");
    const int rows = NextCount();
    for (int r = 0; r < rows; ++r) {
        const int row = r + 2;
        if (r < rows - 1) {
            table.CopyRow(row, 1);
        }
        table.SetCell(row, 1, FormatInt(r + 1));
        for (int column = 2; column <= 5; ++column) {
            table.SetCell(row, column, Next());
        }
        table.FinishRow(row);
    }
    table.SetCell(rows + 2, 5, Next());
    TellProgress();
}

void CWordFiller::FillDefectTypes() {
    CDocxTable table = m_document.Table("tblDefect");
    for (int i = 0; i < Int(m_lists.Codes.size()); ++i) {
        const int row = i + 3;
        if (row > table.RowCount()) {
            table.AddRow();
            table.SetCell(row, 1, FormatInt(i + 1));
        }
        for (int column = 2; column <= 6; ++column) {
            table.SetCell(row, column, Next());
        }
    }
    TellProgress();
}

void CWordFiller::FillDefects() {
    CDocxTable table = m_document.Table("tblDefectAll");
    const int rows = NextCount();
    for (int r = 0; r < rows; ++r) {
        const int row = r + 3;
        if (r < rows - 1) {
            table.AddRow();
        }
        table.SetCell(row, 1, FormatInt(r + 1));
        for (int column = 2; column <= 10; ++column) {
            table.SetCell(row, column, Next());
        }
        table.FinishRow(row);
        TellProgress();
    }
}

// Forms come from the last section to the first, and each is put on top of the one before.
void CWordFiller::FillSectionForms() {
    CDocxForm form = m_document.TakeForm("tblDefectDetail_GB");
    const int forms = NextCount();
    for (int i = 0; i < forms; ++i) {
        const int defects = NextCount();
        if (i < forms - 1) {
            form.InsertPageBreak();
        }
        CDocxTable table = form.Paste();
        FillSectionForm(table, forms - i, defects);
    }
}

void CWordFiller::FillSectionForm(CDocxTable& form, int number, int defects) {
    form.SetCell(1, 2, FormatInt(number));
    form.SetCell(1, 4, Next());
    for (int row = 2; row <= 5; ++row) {
        for (const int column : {2, 4, 6}) {
            form.SetCell(row, column, Next());
        }
    }
    for (const int row : {6, 7}) {
        for (const int column : {2, 4}) {
            form.SetCell(row, column, Next());
        }
    }
    TellProgress();
    std::vector<std::string> pictures;
    for (int row = FirstDefectRow; row < FirstDefectRow + defects; ++row) {
        if (row < FirstDefectRow + defects - 1) {
            form.InsertRowsBelow(row, 1);
        }
        for (int column = 1; column <= 5; ++column) {
            form.SetCell(row, column, Next());
        }
        const std::string& first = Next();
        const std::string& second = Next();
        (void)Next();  // the hours on the clock face, which this form doesn't show
        form.SetCell(row, 6, Refer(first, second, pictures));
        form.FinishRow(row);
    }
    FillPictures(form, FirstDefectRow + defects + 1, pictures);
}

void CWordFiller::FillPictures(CDocxTable& table, int firstRow, const std::vector<std::string>& pictures) {
    const int size = Int(pictures.size());
    for (int i = 0; i < size; ++i) {
        const int row = firstRow + i / 2;
        if (i % 2 == 0 && i + 2 < size) {
            table.InsertRowsBelow(row, 1);
        }
        TellProgress();
        PutPicture(table, row, i % 2 + 1, pictures[static_cast<std::size_t>(i)], Caption(i + 1));
        if (i % 2 == 1 || i + 1 == size) {
            table.FinishRow(row);
        }
    }
}

void CWordFiller::PutPicture(CDocxTable& table, int row, int column, const std::string& path,
                             const std::string& caption) {
    if (const std::optional<DocxPicture> picture = m_document.LoadPicture(path)) {
        if (!caption.empty()) {
            table.SetCell(row, column, caption);
        }
        table.AddPicture(row, column, *picture, PictureWidth, PictureHeight);
    } else if (caption.empty()) {
        table.SetCell(row, column, LoadMessage(MessageNoPicture) + "\r\n" + path);
    } else {
        table.SetCell(row, column, LoadMessage(MessageNoPicture) + caption + "\r\n\r\n" + path + "\r\n");
    }
}

void CWordFiller::FillWells() {
    CDocxTable table = m_document.Table("tblJcjDefectTotal");
    const std::vector<std::string>& list = m_lists.WellPictureRows;
    const int rows = Int(list.size()) / WellRowWidth;
    std::vector<std::string> pictures;
    for (int r = 0; r < rows; ++r) {
        const int row = r + 2;
        if (r < rows - 1) {
            table.InsertRowsBelow(row, 1);
        }
        const auto text = list.begin() + r * WellRowWidth;
        for (int column = 1; column <= 5; ++column) {
            table.SetCell(row, column, text[column - 1]);
        }
        table.SetCell(row, 6, Refer(text[5], text[6], pictures));
        table.FinishRow(row);
    }
    FillPictures(table, rows + 2, pictures);
}

void CWordFiller::FillDefectForms() {
    CDocxForm form = m_document.TakeForm("tblDefectDetail");
    // The number told counts manholes too, which have no form.
    const int told = NextCount();
    const int forms = std::min(told, Int(m_lists.ProjectStrings.size() - m_position) / DefectFormWidth);
    for (int i = 0; i < forms; ++i) {
        if (i < forms - 1) {
            if ((forms - i) % FormsAPage == 0) {
                form.InsertPageBreak();
            } else {
                form.InsertParagraphs(2);
            }
        }
        CDocxTable table = form.Paste();
        for (int row = 1; row <= 6; ++row) {
            table.SetCell(row, 2, Next());
        }
        PutPicture(table, 1, 3, Next(), {});
        TellProgress();
    }
}

const std::string& CWordFiller::Next() {
    static const std::string Nothing;
    return m_position < m_lists.ProjectStrings.size() ? m_lists.ProjectStrings[m_position++] : Nothing;
}

int CWordFiller::NextCount() {
    return ParseInt(Next());
}

void CWordFiller::TellProgress() {
    const std::size_t size = std::max<std::size_t>(m_lists.ProjectStrings.size(), 1);
    const int percent = Int(m_position * 100 / size);
    if (percent != m_told && m_status) {
        m_told = percent;
        m_status(FillText(LoadMessage(MessageProgress), {FormatInt(percent)}));
    }
}
