#include "reports/sonar/CExportSonar.h"

#include <array>
#include <optional>

#include "reports/ooxml/COoxmlError.h"
#include "shell/CHostFiles.h"
#include "shell/seams.h"

namespace {

// Points.
constexpr double PictureWidth = 240;
constexpr double PictureHeight = 192;
constexpr double ChartWidth = 400;
constexpr double ChartHeight = 200;

}  // namespace

bool CExportSonar::ExportSonarReport(const std::string& templatePath, const SonarData& data,
                                     const std::string& folder) {
    m_opened = OpenDocument(templatePath);
    return m_opened && Fill([&] {
               FillSummary(data);
               FillPictures(data.Pictures);
               FillLastSummary(data);
               FillChart(data, folder);
           });
}

void CExportSonar::FillSummary(const SonarData& data) {
    constexpr int FirstRow = 3;
    constexpr int Rows = 4;
    CDocxTable table = Document().Table("tblMud");
    for (int row = 0; row < Rows; ++row) {
        const auto& [first, second] = data.SiltItems[static_cast<std::size_t>(row)];
        table.SetCell(FirstRow + row, 2, first);
        table.SetCell(FirstRow + row, 3, second);
    }
}

void CExportSonar::FillPictures(const std::vector<std::string>& pictures) {
    CDocxTable table = Document().Table("tblPipe3D");
    const int size = static_cast<int>(pictures.size());
    for (int i = 0; i < size; ++i) {
        const int row = i / 2 + 1;
        // Each row as it comes, so that it is copied from one without pictures.
        if (i % 2 == 0 && i + 2 < size) {
            table.InsertRowsBelow(row, 1);
        }
        SetCellPicture(table, row, i % 2 + 1, pictures[static_cast<std::size_t>(i)], PictureWidth,
                       PictureHeight);
        if (i % 2 == 1) {
            table.FinishRow(row);
        }
    }
}

void CExportSonar::FillLastSummary(const SonarData& data) {
    constexpr int Row = 3;
    CDocxTable table = Document().Table("tblPipeInfo");
    const auto& [first, second] = data.SiltItems.back();
    const std::array<std::string, 5> texts = {"", "", first, second, ""};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        table.SetCell(Row, static_cast<int>(i) + 1, texts[i]);
    }
}

void CExportSonar::FillChart(const SonarData& data, const std::string& folder) {
    CDocxTable table = Document().Table("tblPipeWav");
    const std::string path = folder + "silt.jpg";
    const std::string bytes = m_draw(data.PipeItems);
    if (bytes.empty() || folder.empty() || !HostFiles().WriteFile(path, bytes)) {
        throw COoxmlError(OoxmlFault::NotWritten, {HostFiles().HostPath(path)});
    }
    SetCellPicture(table, 1, 1, path, ChartWidth, ChartHeight);
}

void CExportSonar::SetCellPicture(CDocxTable& table, int row, int column, const std::string& path,
                                  double width, double height) {
    const std::optional<DocxPicture> picture = Document().LoadPicture(path);
    if (!picture) {
        throw COoxmlError(OoxmlFault::NotRead, {HostFiles().HostPath(path)});
    }
    table.AddPicture(row, column, *picture, width, height);
}
