#include "check/dialogs/CDlgMends.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <unordered_map>

#include "check/rules.h"
#include "lists/CListCtrl.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"

namespace {

constexpr int MessageTitle = 3859;
constexpr int MessageSection = 3861;
constexpr int MessageRecord = 3862;
constexpr int MessageField = 3864;
constexpr int MessageNow = 3865;
constexpr int MessageThen = 3867;
constexpr int MessageOrder = 3869;
constexpr int MessageSummary = 3870;
constexpr int MessageFiles = 3871;
constexpr int MessageNothing = 3872;
constexpr int MessageMend = 3873;
constexpr QSize FirstSize(860, 460);

}  // namespace

CDlgMends::CDlgMends(const CCheckSnapshot& snapshot, const std::vector<Mend>& mends, const MovedFiles& moved,
                     QWidget* parent)
    : CSizeDlg(parent) {
    setWindowTitle(MessageText(MessageTitle));
    auto* list = AddControl(IdList, new CListCtrl(this));
    list->InsertColumn(MessageText(MessageSection), 130);
    list->InsertColumn(MessageText(MessageRecord), 60);
    list->InsertColumn(MessageText(MessageField), 110);
    list->InsertColumn(MessageText(MessageNow), 260);
    list->InsertColumn(MessageText(MessageThen), 260);
    list->SetEmptyText(MessageText(MessageNothing));
    list->setAccessibleName(windowTitle());
    std::unordered_map<std::int32_t, std::string> labels;
    for (const SectionRecords& entry : snapshot.Sections) {
        labels.emplace(entry.Section.ID, entry.Section.Label());
    }
    for (const Mend& mend : mends) {
        list->AddRow({labels[mend.Section], mend.Record < 0 ? std::string() : FormatInt(mend.Record),
                      mend.Field.empty() ? LoadMessage(MessageOrder) : FieldName(mend.Field), mend.Before,
                      mend.After});
    }
    std::string summary = FillText(LoadMessage(MessageSummary), {std::to_string(mends.size())});
    if (const std::size_t looked = moved.Found.size() + moved.None.size() + moved.Several.size();
        looked > 0) {
        summary = FillText(LoadMessage(MessageFiles),
                           {std::to_string(moved.Found.size()), std::to_string(moved.None.size()),
                            std::to_string(moved.Several.size())}) +
                  ' ' + summary;
    }
    auto* label = AddControl(IdSummary, new QLabel(ToQt(summary), this));
    label->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->addWidget(list, 1);
    column->addWidget(label);
    column->addLayout(MakeOkCancelRow());
    Item<QPushButton>(IdOk)->setText(MessageText(MessageMend));
    EnableControl(IdOk, !mends.empty());
    list->setFocus();
    resize(FirstSize);
}
