#include "bulk/dialogs/CAllDefects.h"

#include <QKeyEvent>
#include <utility>

#include "bulk/CQueryRows.h"
#include "bulk/dialogs/CThumbnails.h"
#include "lists/CListModel.h"
#include "lists/listtexts.h"
#include "shell/dialogs/qttext.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "store/recordtexts.h"

namespace {

constexpr QSize PictureSize(48, 36);
constexpr int DistanceDecimals = 2;

enum Column { Picture, Section, Wells, Code, Defect, Grade, Distance };

}  // namespace

CAllDefects::CAllDefects(QWidget* parent)
    : CListCtrl(parent), m_thumbnails(new CThumbnails(PictureSize, this)) {
    InsertColumn(ListColumn{3953, PictureSize.width() + 16});
    InsertColumn(ListColumn{2600, 90});
    InsertColumn(ListColumn{2601, 110});
    InsertColumn(ListColumn{2031, 60});
    InsertColumn(ListColumn{2030, 90});
    InsertColumn(ListColumn{2032, 50});
    InsertColumn(ListColumn{3954, 80});
    setIconSize(PictureSize);
    setAccessibleName(MessageText(3949));
    SetEmptyText(MessageText(3955));
    AllowSorting();
    Model().Sign = [this](int row) -> QVariant {
        const Row* shown = RowAt(row);
        return m_thumbnails->Get(shown == nullptr ? std::string() : shown->Picture);
    };
    m_thumbnails->OnCame = [this] { viewport()->update(); };
}

void CAllDefects::Clear() {
    m_rows.clear();
    m_thumbnails->Forget();
    DeleteAllRows();
}

void CAllDefects::Show(const CDbRec& database, const CQueryRows& rows) {
    m_thumbnails->Forget();
    m_rows.clear();
    std::unordered_map<std::string, std::string> names;
    std::vector<std::int32_t> ids;
    for (const CQueryRows::Pair& pair : rows.All()) {
        const _REC_DATA& record = *pair.Record;
        auto name = names.find(record.DefectCode);
        if (name == names.end()) {
            name = names.emplace(record.DefectCode, DefectName(database, record.DefectCode)).first;
        }
        m_rows[record.ID] = {pair.Section->ID,
                             pair.Section->TestingName,
                             pair.Section->Label(),
                             record.DefectCode,
                             name->second,
                             FormatInt(record.DefectLevel),
                             FormatNumber(record.DistanceStart, DistanceDecimals),
                             record.GetPicture1()};
        ids.push_back(record.ID);
    }
    ResetRows(ids);
}

const CAllDefects::Row* CAllDefects::RowAt(int row) const {
    const auto found = row < 0 || row >= RowCount() ? m_rows.end() : m_rows.find(ItemData(row));
    return found == m_rows.end() ? nullptr : &found->second;
}

std::int32_t CAllDefects::SectionOf(int row) const {
    const Row* shown = RowAt(row);
    return shown == nullptr ? -1 : shown->Section;
}

std::string CAllDefects::MakeText(int row, int column) const {
    const Row* shown = RowAt(row);
    if (shown == nullptr) {
        return {};
    }
    switch (column) {
        case Section:
            return shown->SectionName;
        case Wells:
            return shown->Wells;
        case Code:
            return shown->Code;
        case Defect:
            return shown->Defect;
        case Grade:
            return shown->Grade;
        case Distance:
            return shown->Distance;
        default:
            return {};
    }
}

void CAllDefects::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && SelectedRow() >= 0 && OnDoubleClick) {
        OnDoubleClick(SelectedRow());
        return;
    }
    CListCtrl::keyPressEvent(event);
}
