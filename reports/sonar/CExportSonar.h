// The report on the silt that a sonar measured: the Word report of one section, made from a template of its
// own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "reports/word/CExportWord.h"
#include "store/sonar.h"

// Draws the profile: the bytes of a JPEG, empty if it can't be made. Windows and the command line hand in the
// one of reports/sonarchart, so that this room needs no toolkit.
using SonarChartDrawer = std::function<std::string(const std::vector<PipeItem>&)>;

class CExportSonar : public CExportWord {
public:
    explicit CExportSonar(SonarChartDrawer draw) : m_draw(std::move(draw)) {}

    // False if the template can't be used (2388; there is no document then), or if the filling ended early:
    // the message names what was missing, and the document stands as filled so far. A picture that isn't
    // there ends it. `folder` is one for temporary files; it must outlive the saving.
    bool ExportSonarReport(const std::string& templatePath, const SonarData& data, const std::string& folder);

    bool HasDocument() const { return m_opened; }

private:
    void FillSummary(const SonarData& data);
    void FillPictures(const std::vector<std::string>& pictures);
    void FillLastSummary(const SonarData& data);
    void FillChart(const SonarData& data, const std::string& folder);
    // Points. Throws COoxmlError that names a picture that can't be read.
    void SetCellPicture(CDocxTable& table, int row, int column, const std::string& path, double width,
                        double height);

    SonarChartDrawer m_draw;
    bool m_opened = false;
};
