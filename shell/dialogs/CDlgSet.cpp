#include "shell/dialogs/CDlgSet.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTreeWidget>

#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/drives.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"

namespace {

constexpr int FolderWidth = 380;
constexpr int DrivesHeight = 150;
constexpr int LetterRole = Qt::UserRole;
constexpr char UsualLetter = 'd';  // where most projects from other machines have their files

class CDriveList : public QTreeWidget {
public:
    using QTreeWidget::QTreeWidget;

protected:
    void paintEvent(QPaintEvent* event) override {
        QTreeWidget::paintEvent(event);
        if (topLevelItemCount() == 0) {
            QPainter painter(viewport());
            painter.setPen(QColor(QuietTextColour));
            painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, MessageText(3076));
        }
    }
};

QString DriveName(char letter) {
    return QString(QChar(letter)).toUpper() + ':';
}

}  // namespace

CDlgSet::CDlgSet(QWidget* parent) : CSizeDlg(parent) {
    setWindowTitle("设置");
    auto* folderLabel = AddControl(IdFolderLabel, new QLabel("视频文件保存路径:", this));
    auto* folder = AddControl(IdFolder, new QLineEdit(this));
    folder->setMinimumWidth(FolderWidth);
    folderLabel->setBuddy(folder);
    auto* browse = AddControl(IdBrowse, new QPushButton("浏览", this));
    auto* languageLabel = AddControl(IdLanguageLabel, new QLabel("语言:", this));
    auto* language = AddControl(IdLanguage, new QComboBox(this));
    languageLabel->setBuddy(language);

    auto* drivesLabel = AddControl(IdDrivesLabel, new QLabel(this));
    m_drives = AddControl(IdDrives, new CDriveList(this));
    drivesLabel->setBuddy(m_drives);
    m_drives->setRootIsDecorated(false);
    m_drives->setHeaderLabels({MessageText(3067), MessageText(3068)});
    m_drives->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_drives->setMinimumHeight(DrivesHeight);
    m_letter = AddControl(IdLetter, new QComboBox(this));
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        m_letter->addItem(DriveName(letter), QChar(letter));
    }
    auto* setDrive = AddControl(IdSetDrive, new QPushButton(this));
    auto* removeDrive = AddControl(IdRemoveDrive, new QPushButton(this));

    auto* grid = new QGridLayout;
    grid->addWidget(folderLabel, 0, 0);
    grid->addWidget(folder, 0, 1);
    grid->addWidget(browse, 0, 2);
    grid->addWidget(languageLabel, 1, 0);
    grid->addWidget(language, 1, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    auto* kept = AddControl(IdKeptLabel, new QLabel(this));
    auto* clearKept = AddControl(IdClearKept, new QPushButton(this));
    clearKept->setAutoDefault(false);
    auto* driveRow = new QHBoxLayout;
    driveRow->addWidget(m_letter);
    driveRow->addWidget(setDrive);
    driveRow->addWidget(removeDrive);
    driveRow->addStretch();
    auto* column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addSpacing(column->spacing());
    column->addWidget(drivesLabel);
    column->addWidget(m_drives, 1);
    column->addLayout(driveRow);
    column->addSpacing(column->spacing());
    auto* keptRow = new QHBoxLayout;
    keptRow->addWidget(kept, 1);
    keptRow->addWidget(clearKept);
    column->addLayout(keptRow);
    column->addSpacing(column->spacing());
    column->addLayout(MakeOkCancelRow());

    OnCommand(IdClearKept, [this] {
        ClearKept();
        ShowKept();
    });
    OnCommand(IdBrowse, [this] { OnBrowse(); });
    OnCommand(IdSetDrive, [this] { OnSetDrive(); });
    OnCommand(IdRemoveDrive, [this] { OnRemoveDrive(); });
    connect(m_drives, &QTreeWidget::currentItemChanged, this, [this] { OnDriveSelected(); });
    connect(m_letter, &QComboBox::currentIndexChanged, this, [this] { UpdateControls(); });
}

void CDlgSet::OnInitDialog() {
    SetCaption(1200);
    SetCaptions({{IdOk, 50},
                 {IdCancel, 51},
                 {IdFolderLabel, 1201},
                 {IdBrowse, 1250},
                 {IdLanguageLabel, 1202},
                 {IdDrivesLabel, 3066},
                 {IdSetDrive, 3069},
                 {IdRemoveDrive, 3070},
                 {IdClearKept, 3468}});
    SetTip(IdBrowse, 3073);
    SetTip(IdLanguage, 3074);
    SetTip(IdSetDrive, 3078);
    FillLanguages();
    Item<QLineEdit>(IdFolder)->setText(ToQt(GetWorkFolder()));
    for (const Drive& drive : ListDrives()) {
        if (drive.IsLink) {
            m_links[drive.Letter] = drive.Folder;
        }
    }
    FillDrives();
    m_letter->setCurrentIndex(m_letter->findData(QChar(UsualLetter)));
    UpdateControls();
    ShowKept();
}

void CDlgSet::ShowKept() {
    const bool shown = KeptText != nullptr && ClearKept != nullptr;
    GetDlgItem(IdKeptLabel)->setVisible(shown);
    GetDlgItem(IdClearKept)->setVisible(shown);
    if (shown) {
        Item<QLabel>(IdKeptLabel)->setText(ToQt(KeptText()));
    }
}

void CDlgSet::FillLanguages() {
    auto* box = Item<QComboBox>(IdLanguage);
    std::vector<std::string> languages;
    EnumLanguages(languages);
    int inForce = -1;
    for (const std::string& language : languages) {
        if (EqualNoCase(language, GetLanguageName())) {
            inForce = box->count();
        }
        box->addItem(ToQt(language));
    }
    box->setCurrentIndex(inForce);
}

void CDlgSet::FillDrives() {
    std::map<char, QString> rows;
    for (const Drive& drive : ListDrives()) {
        if (!drive.IsLink) {
            rows[drive.Letter] = ToQt(drive.Folder) + " (" + MessageText(3077) + ')';
        }
    }
    for (const auto& [letter, folder] : m_links) {
        rows[letter] = ToQt(folder);
    }
    m_drives->clear();
    for (const auto& [letter, text] : rows) {
        auto* row = new QTreeWidgetItem(m_drives, {DriveName(letter), text});
        row->setData(0, LetterRole, QChar(letter));
        row->setToolTip(1, text);
    }
}

char CDlgSet::Letter() const {
    return m_letter->currentData().toChar().toLatin1();
}

void CDlgSet::OnBrowse() {
    // It only shows what there is: the work folder is what stands in the field, as typed.
    (void)Prompts().PickFolder(LoadMessage(2206));
}

void CDlgSet::OnSetDrive() {
    const std::string path = Prompts().PickFolder(LoadMessage(3075) + " " + FromQt(DriveName(Letter())));
    if (!path.empty()) {
        m_links[Letter()] = HostFiles().HostPath(path);
        FillDrives();
        UpdateControls();
    }
}

void CDlgSet::OnRemoveDrive() {
    m_links.erase(Letter());
    FillDrives();
    UpdateControls();
}

void CDlgSet::OnDriveSelected() {
    if (const QTreeWidgetItem* row = m_drives->currentItem()) {
        m_letter->setCurrentIndex(m_letter->findData(row->data(0, LetterRole)));
    }
}

void CDlgSet::UpdateControls() {
    EnableControl(IdRemoveDrive, m_links.contains(Letter()));
}

bool CDlgSet::StoreDrives() {
    std::map<char, std::string> former;
    for (const Drive& drive : ListDrives()) {
        if (drive.IsLink) {
            former[drive.Letter] = drive.Folder;
        }
    }
    for (const auto& [letter, folder] : former) {
        if (!m_links.contains(letter) && !RemoveDrive(letter)) {
            ShowMessage(3072, " " + FromQt(DriveName(letter)));
            return false;
        }
    }
    for (const auto& [letter, folder] : m_links) {
        if (former.contains(letter) && former[letter] == folder) {
            continue;
        }
        std::error_code error;
        const DriveResult result = SetDrive(letter, folder, error);
        if (result == DriveResult::HasFiles) {
            ShowMessage(3071, " " + HostFiles().DriveFolder(letter).string());
        } else if (result != DriveResult::Done) {
            ShowMessage(3072, " " + FromQt(DriveName(letter)) + " " + folder);
        }
        if (result != DriveResult::Done) {
            return false;
        }
    }
    return true;
}

void CDlgSet::OnOK() {
    SetWorkFolder(FromQt(Item<QLineEdit>(IdFolder)->text()));
    (void)SaveSettings();  // silent by rule; the folder counts for this run all the same
    if (StoreDrives()) {
        CSizeDlg::OnOK();
    }
}
