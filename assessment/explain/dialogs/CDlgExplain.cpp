#include "assessment/explain/dialogs/CDlgExplain.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

#include "assessment/explain/dialogs/CExplanationList.h"
#include "assessment/explain/dialogs/gradechoice.h"
#include "assessment/explain/explanationtext.h"
#include "assessment/explain/projectgrades.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageTitle = 3500;
constexpr int MessageRegion = 301;
constexpr int MessageSoil = 302;
constexpr int MessageGoTo = 3560;
constexpr int MessageReorder = 3561;
constexpr int MessageCopy = 3562;
constexpr int MessageClose = 3470;

constexpr QSize FirstSize(920, 560);

}  // namespace

CDlgExplain::CDlgExplain(CDbRec& database, ScoringRoute route, const CTestingDataArray& sections,
                         std::int32_t section, bool canChange, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_route(route),
      m_sections(sections),
      m_section(section),
      m_canChange(canChange),
      m_lines(AddControl(IdLines, new CExplanationList(this))) {
    auto* parameters = new QHBoxLayout;
    m_region = AddParameter(*parameters, IdRegionLabel, MessageRegion, IdRegion);
    parameters->addSpacing(16);
    m_soil = AddParameter(*parameters, IdSoilLabel, MessageSoil, IdSoil);
    parameters->addStretch();

    const auto button = [this](int id, int message) {
        auto* made = AddControl(id, new QPushButton(MessageText(message), this));
        made->setAutoDefault(false);
        return made;
    };
    auto* row = new QHBoxLayout;
    row->addWidget(button(IdCopy, MessageCopy));
    row->addWidget(button(IdReorder, MessageReorder));
    row->addStretch();
    row->addWidget(button(IdGoTo, MessageGoTo));
    row->addWidget(button(IdCancel, MessageClose));
    Item<QPushButton>(IdGoTo)->setDefault(true);

    auto* column = new QVBoxLayout(this);
    column->addLayout(parameters);
    column->addWidget(m_lines, 1);
    column->addLayout(row);

    m_lines->OnItemChanged = [this] { UpdateControls(); };
    m_lines->OnDoubleClick = [this](int) { GoTo(); };
    OnCommand(IdGoTo, [this] { GoTo(); });
    OnCommand(IdReorder, [this] { Reorder(); });
    OnCommand(IdCopy, [this] { Copy(); });
    resize(FirstSize);
}

QComboBox* CDlgExplain::AddParameter(QLayout& row, int labelId, int label, int id) {
    auto* box = AddControl(id, new QComboBox(this));
    auto* text = AddControl(labelId, new QLabel(MessageText(label), this));
    text->setBuddy(box);
    row.addWidget(text);
    row.addWidget(box);
    return box;
}

void CDlgExplain::OnInitDialog() {
    const GradeChoice kept = KeptGradeChoice(m_database.Path(), m_route);
    FillParameterBox(*m_region, ParametersK(m_route));
    FillParameterBox(*m_soil, ParametersT(m_route));
    m_region->setCurrentIndex(kept.RowK);
    m_soil->setCurrentIndex(kept.RowT);
    for (QComboBox* box : {m_region, m_soil}) {
        connect(box, &QComboBox::currentIndexChanged, this, [this] {
            KeepGradeChoice(m_database.Path(), m_region->currentIndex(), m_soil->currentIndex());
            Fill();
        });
    }
    Fill();
    if (!m_explanation) {
        EndDialog(IdCancel);
        return;
    }
    setWindowTitle(ToQt(FillText(LoadMessage(MessageTitle), {m_explanation->Grade.Section.Label()})));
    m_lines->setAccessibleName(windowTitle());
    m_lines->setFocus();
}

void CDlgExplain::Fill() {
    m_explanation = ReadExplanation(m_database, m_route, m_sections, m_section,
                                    m_region->currentData().toFloat(), m_soil->currentData().toFloat());
    m_lines->Show(m_explanation ? ExplanationRows(*m_explanation, m_database, m_sections)
                                : std::vector<ExplanationRow>());
    m_lines->SelectRow(0);
    UpdateControls();
}

void CDlgExplain::UpdateControls() {
    const ExplanationRow* line = m_lines->SelectedLine();
    EnableControl(IdGoTo, line != nullptr && line->Section >= 0);
    GetDlgItem(IdReorder)->setVisible(m_explanation && m_explanation->ByDistance);
    EnableControl(IdReorder, m_canChange);
}

void CDlgExplain::GoTo() {
    const ExplanationRow* line = m_lines->SelectedLine();
    if (line != nullptr && line->Section >= 0) {
        Section = line->Section;
        Record = line->Record;
        EndDialog(IdOk);
    }
}

// Full scoring alone depends on the order, and takes each section by itself: its records are all.
void CDlgExplain::Reorder() {
    if (m_explanation && m_explanation->ByDistance && m_canChange) {
        (void)m_database.SetRecordOrder(m_section, IdsByDistance(m_explanation->Grade.Records));
        Fill();
        m_lines->setFocus();
    }
}

void CDlgExplain::Copy() {
    QGuiApplication::clipboard()->setText(ToQt(m_lines->AsText()));
}
