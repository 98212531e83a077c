#include "reports/word/CExportWord.h"

#include <utility>

#include "reports/ooxml/COoxmlError.h"
#include "reports/word/CWordFiller.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"

namespace {

constexpr int MessageLevelName = 2382;
constexpr int MessageNoLevelChart = 2383;
constexpr int MessageNoTypeChart = 2384;
constexpr int MessageNoTemplate = 2388;
constexpr int MessageNotFilled = 3250;

void ShowError(int number, const COoxmlError& error) {
    ShowMessage(number, "\n" + std::string(error.what()));
}

}  // namespace

bool CExportWord::OpenDocument(const std::string& templatePath) {
    try {
        m_document = std::make_unique<CDocx>(templatePath);
        return true;
    } catch (const COoxmlError& error) {
        ShowError(MessageNoTemplate, error);
        return false;
    }
}

bool CExportWord::FillDocument(const ReportLists& lists, const std::string& mapPicture, bool fullData,
                               const StatusLine& status) {
    // Thousands of pictures lie in a few folders.
    const CHostFiles::CLookOnce look(HostFiles());
    return Fill([&] { CWordFiller(*m_document, lists, status).Fill(mapPicture, fullData); });
}

bool CExportWord::Fill(const std::function<void()>& fill) {
    try {
        fill();
        return true;
    } catch (const COoxmlError& error) {
        ShowError(MessageNotFilled, error);
        return false;
    }
}

bool CExportWord::DrawChart(ChartSpec chart, int failure) {
    try {
        CheckChart(chart);
        m_chart = std::move(chart);
        return true;
    } catch (const COoxmlError& error) {
        ShowError(failure, error);
        return false;
    }
}

bool CExportWord::CopyTypeChart(const CDWordArray& countsByType, const std::vector<std::string>& names) {
    ChartSpec chart{ChartKind::Pie, 3, {}, {}, 400, 400};
    for (std::size_t i = 0; i < countsByType.size(); ++i) {
        if (countsByType[i] > 0) {
            chart.Names.push_back(names[i]);
            chart.Values.push_back(countsByType[i]);
        }
    }
    return DrawChart(std::move(chart), MessageNoTypeChart);
}

bool CExportWord::CopyLevelChart(const CDWordArray& countsByLevel) {
    ChartSpec chart{ChartKind::Columns, 1, {}, {}, 400, 250};
    for (const std::uint32_t count : countsByLevel) {
        const auto level = static_cast<int>(chart.Values.size()) + 1;
        chart.Names.push_back(FillText(LoadMessage(MessageLevelName), {FormatInt(level)}));
        chart.Values.push_back(count);
    }
    return DrawChart(std::move(chart), MessageNoLevelChart);
}

bool CExportWord::PasteChart(std::string_view bookmark) {
    return Fill([&] { m_document->SetChart(bookmark, m_chart); });
}
