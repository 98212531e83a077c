#include "geo/dialogs/CDlgSelTesting.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>

#include "geo/shapefile/shapeexport.h"
#include "lists/CTestingList.h"
#include "lists/CTickAllBox.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/seams.h"

namespace {

constexpr int IdSections = 1031;
constexpr int IdExport = 1050;
constexpr int IdAll = 5001;

constexpr int MessageNoSections = 3232;
constexpr int MessageSaveShapes = 3423;

constexpr int ListHeight = 320;    // pixels
constexpr int ScreenMargin = 120;  // pixels

}  // namespace

CDlgSelTesting::CDlgSelTesting(CDbRec& database, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_sections(AddControl(IdSections, new CTestingList(this))),
      m_all(AddControl(IdAll, new CTickAllBox(*m_sections, this))) {
    setWindowTitle("选择测段");
    m_sections->FixOrder();
    m_sections->AllowSeveral();
    m_sections->setMinimumHeight(ListHeight);
    AddControl(IdExport, new QPushButton("生成ShapeFile", this))->hide();  // the caller exports

    auto* head = new QHBoxLayout;
    head->addStretch();
    head->addWidget(m_all);
    auto* column = new QVBoxLayout(this);
    column->addLayout(head);
    column->addWidget(m_sections, 1);
    column->addLayout(MakeOkCancelRow());
}

void CDlgSelTesting::OnInitDialog() {
    SetCaption(1100);
    SetCaptions({{IdOk, 50}, {IdCancel, 51}});
    m_sections->CreateColumns(true);
    m_sections->SetEmptyText(MessageText(MessageNoSections));
    const CWaitCursor wait;
    (void)m_sections->Fill(m_database);  // has told its message
    m_sections->RebuildHasDefects();
    m_sections->CheckAll(true);
    m_all->ShowTicked();
    m_sections->setMinimumWidth(
        std::min(m_sections->FullWidth(), screen()->availableSize().width() - ScreenMargin));
    m_sections->setFocus();
}

void CDlgSelTesting::OnOK() {
    ChosenSections.clear();
    for (const _TESTING_DATA& section : m_sections->CheckedSections()) {
        ChosenSections.push_back(static_cast<std::uint32_t>(section.ID));
    }
    EndDialog(IdOk);
}

void CDlgSelTesting::ExportShapeFile(const std::string& title) {
    const std::string path = Prompts().PickSaveFile(LoadMessage(MessageSaveShapes), title, "shp",
                                                    {{"shp File(*.shp)", {"*.shp"}}});
    if (!path.empty()) {
        const CWaitCursor wait;
        (void)ExportShapes(m_database, ChosenSections, path);  // has told its message
    }
}
