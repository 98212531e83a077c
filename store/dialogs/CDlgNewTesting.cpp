#include "store/dialogs/CDlgNewTesting.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <sstream>

#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/language.h"
#include "shell/seams.h"

namespace {

using Id = SectionControl;

constexpr int IdRemove = 1030;
constexpr int IdAdd = 1047;
constexpr int IdCalculate = 1048;
constexpr int MessageAllFiles = 3338;

const std::vector<std::string> VideoPatterns = {
    "*.avi", "*.mp4",  "*.mpg", "*.mpeg", "*.wmv", "*.mov", "*.mkv", "*.m4v", "*.asf", "*.ts",
    "*.mts", "*.m2ts", "*.vob", "*.dat",  "*.flv", "*.3gp", "*.264", "*.265", "*.webm"};

constexpr std::array<int, 15> TextControls{
    Id::StartLongitude, Id::StartLatitude, Id::EndLongitude, Id::EndLatitude, Id::Name,
    Id::TaskNo,         Id::Direction,     Id::TaskName,     Id::Location,    Id::PipeType,
    Id::Material,       Id::Diameter,      Id::Company,      Id::Tester,      Id::PipeLength};

// Texts of captions without an id.
QString OwnText(int number, const char* builtIn) {
    return HasLanguageTable() ? MessageText(number) : QString::fromUtf8(builtIn);
}

// One row is always selected, as long as there are any. An empty list says what to do.
class CVideoList : public QListWidget {
public:
    explicit CVideoList(QWidget* parent) : QListWidget(parent) {
        setTextElideMode(Qt::ElideMiddle);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setUniformItemSizes(true);
    }
    QSize sizeHint() const override { return Rows(5); }
    QSize minimumSizeHint() const override { return Rows(2); }

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent*) const override {
        return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
    }
    void paintEvent(QPaintEvent* event) override {
        QListWidget::paintEvent(event);
        if (count() == 0) {
            QPainter painter(viewport());
            painter.setPen(QColor(QuietTextColour));
            painter.drawText(viewport()->rect().adjusted(12, 8, -12, -8), Qt::AlignCenter | Qt::TextWordWrap,
                             MessageText(3043));
        }
    }

private:
    // Wide enough for most paths.
    QSize Rows(int rows) const { return {600, rows * (fontMetrics().height() + 4) + 2 * frameWidth() + 4}; }
};

}  // namespace

CDlgNewTesting::CDlgNewTesting(QWidget* parent) : CSizeDlg(parent) {
    setWindowTitle("管段属性");
    auto* columns = new QHBoxLayout;
    columns->addWidget(MakeTaskGroup(), 1);
    columns->addWidget(MakePipeGroup(), 1);
    auto* window = new QVBoxLayout(this);
    window->addLayout(columns);
    window->addWidget(MakeVideoGroup(), 1);
    window->addLayout(MakeOkCancelRow());
    ApplyCaptions();
    MakeShortcuts();
    for (const int id : {IdAdd, IdRemove, IdCalculate}) {
        Item<QPushButton>(id)->setAutoDefault(false);  // Enter is OK's
    }
    OnCommand(IdAdd, [this] { OnAddVideos(); });
    OnCommand(IdRemove, [this] { OnRemoveVideo(); });
    OnCommand(IdCalculate, [this] { OnCalculate(); });
    connect(m_videos, &QListWidget::currentRowChanged, this, [this] { OnSelectVideo(); });
}

void CDlgNewTesting::AddEdit(QFormLayout* form, int label, const char* caption, int id) {
    form->addRow(AddControl(label, new QLabel(caption, this)), AddControl(id, new QLineEdit(this)));
}

void CDlgNewTesting::AddBox(QFormLayout* form, int label, const char* caption, int id, bool editable) {
    auto* box = AddControl(id, new QComboBox(this));
    box->setEditable(editable);
    if (editable) {
        box->setCompleter(nullptr);  // what is typed stays as typed
    }
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMaxVisibleItems(20);
    for (const char* proposal : SectionProposals(id)) {
        box->addItem(QString::fromUtf8(proposal));
    }
    form->addRow(AddControl(label, new QLabel(caption, this)), box);
}

QGroupBox* CDlgNewTesting::MakeTaskGroup() {
    auto* group = new QGroupBox(OwnText(3040, "任务"), this);
    auto* form = new QFormLayout(group);
    AddEdit(form, 1079, "管段名称:", Id::Name);
    AddEdit(form, 1059, "任务编号:", Id::TaskNo);
    AddEdit(form, 1061, "任务名称:", Id::TaskName);
    AddEdit(form, 1062, "检测地点:", Id::Location);
    AddBox(form, 1060, "检测方向:", Id::Direction, false);
    AddEdit(form, 1053, "检测单位:", Id::Company);
    AddEdit(form, 1102, "检测员:", Id::Tester);
    auto* date = AddControl(Id::Date, new QDateTimeEdit(this));
    // The time of the inspection's place as written, which no daylight saving of this one may move.
    date->setTimeSpec(Qt::UTC);
    date->setMinimumDate(QDate(1601, 1, 1));
    date->setDisplayFormat("yyyy/MM/dd HH:mm:ss");
    date->setCalendarPopup(true);
    form->addRow(OwnText(3037, "检测日期:"), date);
    return group;
}

QHBoxLayout* CDlgNewTesting::MakePosition(int longitude, int latitude, int longitudeName, int latitudeName) {
    auto* row = new QHBoxLayout;
    for (const auto& [id, name] : {std::pair(longitude, longitudeName), std::pair(latitude, latitudeName)}) {
        auto* edit = AddControl(id, new QLineEdit(this));
        edit->setPlaceholderText(MessageText(name));
        edit->setAccessibleName(MessageText(name));
        edit->setToolTip(MessageText(name) + "\n" + MessageText(3049));
        edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance("-121.47370211") + 20);
        row->addWidget(edit);
    }
    return row;
}

QGroupBox* CDlgNewTesting::MakePipeGroup() {
    auto* group = new QGroupBox(OwnText(3041, "管道"), this);
    auto* form = new QFormLayout(group);
    AddBox(form, 1052, "管道类型:", Id::PipeType, false);
    AddBox(form, 1064, "管道材质:", Id::Material, true);
    AddEdit(form, 1055, "管径(mm):", Id::Diameter);
    form->addRow(AddControl(1080, new QLabel("起始经纬度", this)),
                 MakePosition(Id::StartLongitude, Id::StartLatitude, 3032, 3033));
    form->addRow(AddControl(1081, new QLabel("结束经纬度", this)),
                 MakePosition(Id::EndLongitude, Id::EndLatitude, 3034, 3035));
    auto* length = new QHBoxLayout;
    length->addWidget(AddControl(Id::PipeLength, new QLineEdit(this)), 1);
    length->addWidget(AddControl(IdCalculate, new QPushButton("计算", this)));
    form->addRow(AddControl(1077, new QLabel("管长(m):", this)), length);
    auto* inspected = AddControl(Id::DetectionLength, new QLineEdit(this));
    inspected->setPlaceholderText(MessageText(3047));
    form->addRow(OwnText(3038, "检测长度(m):"), inspected);
    return group;
}

QGroupBox* CDlgNewTesting::MakeVideoGroup() {
    auto* group = new QGroupBox(OwnText(3039, "视频文件"), this);
    m_videos = AddControl(Id::Videos, new CVideoList(this));
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(AddControl(IdAdd, new QPushButton("添加", this)));
    buttons->addWidget(AddControl(IdRemove, new QPushButton("删除", this)));
    buttons->addStretch();
    auto* list = new QHBoxLayout;
    list->addWidget(m_videos, 1);
    list->addLayout(buttons);
    auto* wells = new QHBoxLayout;
    wells->addWidget(AddControl(1056, new QLabel("起始井号:", this)));
    wells->addWidget(AddControl(Id::StartWell, new QLineEdit(this)), 1);
    wells->addSpacing(12);
    wells->addWidget(AddControl(1063, new QLabel("结束井号:", this)));
    wells->addWidget(AddControl(Id::EndWell, new QLineEdit(this)), 1);
    auto* rows = new QVBoxLayout(group);
    rows->addLayout(list, 1);
    rows->addLayout(wells);
    return group;
}

void CDlgNewTesting::MakeShortcuts() {
    for (const auto& [key, id] : {std::pair(Qt::Key_Insert, IdAdd), std::pair(Qt::Key_Delete, IdRemove)}) {
        auto* shortcut = new QShortcut(key, m_videos);
        shortcut->setContext(Qt::WidgetShortcut);
        auto* button = Item<QPushButton>(id);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isVisible()) {
                button->click();
            }
        });
    }
}

void CDlgNewTesting::ApplyCaptions() {
    SetCaption(700);
    SetCaptions({{IdOk, 50},  {IdCancel, 51}, {1059, 702},  {1060, 703},        {1061, 704},
                 {1062, 705}, {1056, 706},    {1063, 707},  {1052, 708},        {1064, 709},
                 {1055, 710}, {1053, 711},    {1102, 712},  {1077, 713},        {1079, 731},
                 {1080, 732}, {1081, 733},    {IdAdd, 750}, {IdCalculate, 751}, {IdRemove, 752}});
    SetTip(IdAdd, 3044);
    SetTip(IdRemove, 3045);
    SetTip(IdCalculate, 3046);
    SetTip(Id::DetectionLength, 3047);
    SetTip(Id::StartWell, 3048);
    SetTip(Id::EndWell, 3048);
}

void CDlgNewTesting::OnInitDialog() {
    const bool isNew = NewFlag == 1;
    m_form = MakeSectionForm(Sections, isNew);
    SectionTexts texts;
    ShowSectionForm(m_form, texts);
    if (isNew) {
        OfferNewPipeDefaults(texts);
    }
    ShowTexts(texts);
    Item<QLineEdit>(Id::DetectionLength)->setText(ToQt(m_form.DetectionLength));
    Item<QDateTimeEdit>(Id::Date)->setDateTime(
        QDateTime::fromSecsSinceEpoch(m_form.Date.time_since_epoch().count(), Qt::UTC));
    ShowVideos();
    ShowWells(ShownWells(m_form));
    GetDlgItem(IdAdd)->setVisible(isNew);
    GetDlgItem(IdRemove)->setVisible(isNew);
    BeginDraft();
    EnableControls();
    GetDlgItem(Id::Name)->setFocus();
}

// Of new sections the videos too, with their manholes; the video of a stored one isn't changed here.
void CDlgNewTesting::BeginDraft() {
    if (Draft.Kind.empty()) {
        return;
    }
    m_draft = std::make_unique<CFormDraft>(*this, std::move(Draft));
    m_draft->Keep(
        "videos",
        [this] {
            KeepTypedWells();
            std::string text;
            for (std::size_t i = 0; i < m_form.Videos.size(); ++i) {
                text += m_form.Videos[i] + "\n" + m_form.Wells[i].Start + "\n" + m_form.Wells[i].End + "\n";
            }
            return text;
        },
        [this](const std::string& text) {
            std::istringstream lines(text);
            std::string video;
            WellPair wells;
            m_form.Videos.clear();
            m_form.Wells.clear();
            while (std::getline(lines, video) && std::getline(lines, wells.Start) &&
                   std::getline(lines, wells.End)) {
                m_form.Videos.push_back(video);
                m_form.Wells.push_back(wells);
            }
            m_form.SelectedRow = m_form.Videos.empty() ? -1 : 0;
            ShowVideos();
            ShowWells(ShownWells(m_form));
        });
    for (const int id : TextControls) {
        m_draft->KeepControl(id);
    }
    for (const int id : {Id::DetectionLength, Id::Date}) {
        m_draft->KeepControl(id);
    }
    m_draft->Begin();
}

SectionTexts CDlgNewTesting::TextsShown() const {
    SectionTexts texts;
    for (const int id : TextControls) {
        if (const auto* edit = Item<QLineEdit>(id)) {
            texts[id] = FromQt(edit->text());
        } else if (const auto* box = Item<QComboBox>(id)) {
            texts[id] = FromQt(box->currentText());
        }
    }
    return texts;
}

void CDlgNewTesting::ShowTexts(const SectionTexts& texts) {
    for (const auto& [id, value] : texts) {
        const QString text = ToQt(value);
        if (auto* edit = Item<QLineEdit>(id)) {
            if (edit->text() != text) {  // or else the cursor would move
                edit->setText(text);
            }
        } else if (auto* box = Item<QComboBox>(id); box != nullptr && box->isEditable()) {
            box->setEditText(text);
        } else if (box != nullptr) {
            // What a section has from elsewhere may be none of the proposals, and must come back all the
            // same.
            if (!text.isEmpty() && box->findText(text) < 0) {
                box->addItem(text);
            }
            box->setCurrentIndex(box->findText(text));
        }
    }
}

void CDlgNewTesting::ReadForm() {
    const std::optional<SectionProblem> problem = ReadSectionForm(TextsShown(), m_form);
    m_unread = problem ? problem->Control : 0;
    if (problem) {
        ShowProblem(*problem);
    }
}

void CDlgNewTesting::ShowForm() {
    SectionTexts texts;
    ShowSectionForm(m_form, texts, m_unread);
    ShowTexts(texts);
}

void CDlgNewTesting::ShowProblem(const SectionProblem& problem) {
    Prompts().ShowMessage(problem.Message, problem.Text);
    QWidget* control = GetDlgItem(problem.Control);
    control->setFocus();
    if (auto* edit = dynamic_cast<QLineEdit*>(control)) {
        edit->selectAll();
    }
}

void CDlgNewTesting::KeepTypedWells() {
    StoreWells(m_form, {FromQt(Item<QLineEdit>(Id::StartWell)->text()),
                        FromQt(Item<QLineEdit>(Id::EndWell)->text())});
}

void CDlgNewTesting::ShowWells(const WellPair& wells) {
    Item<QLineEdit>(Id::StartWell)->setText(ToQt(wells.Start));
    Item<QLineEdit>(Id::EndWell)->setText(ToQt(wells.End));
}

void CDlgNewTesting::ShowVideos() {
    const QSignalBlocker quiet(m_videos);
    m_videos->clear();
    for (const std::string& video : m_form.Videos) {
        auto* row = new QListWidgetItem(ToQt(video), m_videos);
        row->setToolTip(row->text());
    }
    m_videos->setCurrentRow(m_form.SelectedRow);
}

void CDlgNewTesting::EnableControls() {
    const bool selected = m_form.SelectedRow >= 0;
    EnableControl(IdRemove, selected);
    EnableControl(Id::StartWell, selected);
    EnableControl(Id::EndWell, selected);
}

void CDlgNewTesting::OnAddVideos() {
    ReadForm();
    // Recorders name theirs in many ways.
    const std::vector<std::string> paths = Prompts().PickOpenFiles(
        LoadMessage(3042),
        {{LoadMessage(2180) + "(*.avi)", VideoPatterns}, {LoadMessage(MessageAllFiles), {"*.*"}}});
    if (paths.empty()) {
        return;
    }
    KeepTypedWells();
    if (AddVideos(m_form, paths)) {
        ShowVideos();
        ShowWells(ShownWells(m_form));
    }
    ShowForm();
    EnableControls();
    // Enter goes on from there, and doesn't choose files again.
    Item<QLineEdit>(Id::StartWell)->setFocus();
    Item<QLineEdit>(Id::StartWell)->selectAll();
}

void CDlgNewTesting::OnRemoveVideo() {
    ReadForm();
    KeepTypedWells();
    RemoveSelectedVideo(m_form);
    ShowVideos();
    ShowWells(ShownWells(m_form));
    ShowForm();
    EnableControls();
}

void CDlgNewTesting::OnSelectVideo() {
    if (m_videos->currentRow() == m_form.SelectedRow) {
        return;
    }
    KeepTypedWells();
    m_form.SelectedRow = m_videos->currentRow();
    ReadForm();
    ShowWells(ShownWells(m_form));
    EnableControls();
}

void CDlgNewTesting::OnCalculate() {
    ReadForm();
    if (m_unread != 0 && m_unread != Id::PipeLength) {
        return;  // a length that doesn't belong to what stands in the form would only mislead
    }
    m_unread = 0;
    CalculatePipeLength(m_form);
    ShowForm();
}

void CDlgNewTesting::OnOK() {
    // What is missing is told with all else that is. The checks go on with what could be read.
    if (FromQt(Item<QLineEdit>(Id::PipeLength)->text()).empty()) {
        Item<QLineEdit>(Id::PipeLength)->setText("0");
    }
    ReadForm();
    m_form.DetectionLength = FromQt(Item<QLineEdit>(Id::DetectionLength)->text());
    m_form.Date = std::chrono::local_seconds(
        std::chrono::seconds(Item<QDateTimeEdit>(Id::Date)->dateTime().toSecsSinceEpoch()));
    KeepTypedWells();
    if (const std::optional<SectionProblem> problem = CheckSectionForm(m_form)) {
        if (problem->Row >= 0) {
            const QSignalBlocker quiet(m_videos);
            m_form.SelectedRow = problem->Row;
            m_videos->setCurrentRow(problem->Row);
            ShowWells(problem->Wells);
        }
        ShowProblem(*problem);
        return;
    }
    Sections = MakeSections(m_form, Sections);
    KeepNewPipeDefaults(TextsShown());
    EndDialog(IdOk);
}
