#include "shell/dialogs/CFormDraft.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QUuid>
#include <algorithm>

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/dialogs/qttext.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr const char* Ending = ".draft";
constexpr const char* LockEnding = ".lock";
constexpr int Pace = 1000;  // milliseconds
constexpr std::size_t MostBytes = 1U << 20U;

std::string Folder() {
    return GetDbFolder() + "_draft\\";
}

// Null if somebody has it.
std::shared_ptr<CUnixFile> TakeLock(const std::string& path) {
    auto lock = std::make_shared<CUnixFile>(
        open((HostFiles().HostPath(path) + LockEnding).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const bool taken = lock->IsOpen() && flock(lock->Descriptor(), LOCK_EX | LOCK_NB) == 0;
    return taken ? lock : nullptr;
}

bool Parse(const std::string& bytes, FormDraft& draft) {
    const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(bytes)).object();
    draft.Kind = FromQt(json["kind"].toString());
    draft.Project = FromQt(json["project"].toString());
    draft.Section = json["section"].toInt(-1);
    draft.Record = json["record"].toInt(-1);
    draft.Time = FromQt(json["time"].toString());
    const QJsonObject values = json["values"].toObject();
    for (auto value = values.begin(); value != values.end(); ++value) {
        draft.Values[FromQt(value.key())] = FromQt(value.value().toString());
    }
    return !draft.Kind.empty() && !draft.Values.empty();
}

std::string ToText(const FormDraft& draft) {
    QJsonObject values;
    for (const auto& [name, value] : draft.Values) {
        values[ToQt(name)] = ToQt(value);
    }
    const QJsonObject json{{"kind", ToQt(draft.Kind)}, {"project", ToQt(draft.Project)},
                           {"section", draft.Section}, {"record", draft.Record},
                           {"time", ToQt(draft.Time)}, {"values", values}};
    return QJsonDocument(json).toJson().toStdString();
}

}  // namespace

std::vector<FormDraft> FindDrafts() {
    std::vector<FormDraft> drafts;
    for (const std::string& name : HostFiles().ListFiles(Folder(), Ending)) {
        FormDraft draft;
        draft.Path = Folder() + name;
        draft.Lock = TakeLock(draft.Path);
        if (draft.Lock == nullptr) {
            continue;
        }
        const auto bytes = HostFiles().ReadFile(draft.Path, MostBytes);
        if (bytes && Parse(*bytes, draft)) {
            drafts.push_back(std::move(draft));
        } else {
            DropDraft(draft);
        }
    }
    std::sort(drafts.begin(), drafts.end(),
              [](const FormDraft& a, const FormDraft& b) { return a.Time < b.Time; });
    return drafts;
}

void DropDraft(const FormDraft& draft) {
    if (!draft.Path.empty()) {
        (void)HostFiles().DeleteFile(draft.Path);
        (void)HostFiles().DeleteFile(draft.Path + LockEnding);
    }
}

CFormDraft::CFormDraft(CSizeDlg& window, FormDraft draft) : m_window(window), m_draft(std::move(draft)) {}

CFormDraft::~CFormDraft() {
    DropDraft(m_draft);
}

void CFormDraft::Keep(std::string name, std::function<std::string()> get,
                      std::function<void(const std::string&)> set) {
    m_kept.push_back({std::move(name), std::move(get), std::move(set)});
}

void CFormDraft::KeepControl(int id) {
    QWidget* const control = m_window.GetDlgItem(id);
    const std::string name = std::to_string(id);
    if (auto* line = dynamic_cast<QLineEdit*>(control)) {
        Keep(
            name, [line] { return FromQt(line->text()); },
            [line](const std::string& text) { line->setText(ToQt(text)); });
    } else if (auto* edit = dynamic_cast<QPlainTextEdit*>(control)) {
        Keep(
            name, [edit] { return FromQt(edit->toPlainText()); },
            [edit](const std::string& text) {
                if (edit->toPlainText() != ToQt(text)) {  // or else hard blanks of the record would go
                    edit->setPlainText(ToQt(text));
                    edit->document()->setModified(true);
                }
            });
    } else if (auto* time = dynamic_cast<QDateTimeEdit*>(control)) {
        Keep(
            name, [time] { return FromQt(time->dateTime().toString(Qt::ISODate)); },
            [time](const std::string& text) {
                time->setDateTime(QDateTime::fromString(ToQt(text), Qt::ISODate));
            });
    } else if (auto* box = dynamic_cast<QComboBox*>(control)) {
        Keep(
            name,
            [box] {
                return box->isEditable() ? FromQt(box->currentText()) : std::to_string(box->currentIndex());
            },
            [box](const std::string& text) {
                if (box->isEditable()) {
                    box->setEditText(ToQt(text));
                } else if (const int row = ToQt(text).toInt(); row < box->count()) {
                    box->setCurrentIndex(row);
                }
            });
    }
}

std::map<std::string, std::string> CFormDraft::Collect() const {
    std::map<std::string, std::string> values;
    for (const Kept& kept : m_kept) {
        values[kept.Name] = kept.Get();
    }
    return values;
}

void CFormDraft::Begin() {
    const bool resumed = !m_draft.Values.empty();
    for (const Kept& kept : m_kept) {
        const auto value = m_draft.Values.find(kept.Name);
        if (value != m_draft.Values.end() && kept.Set) {
            kept.Set(value->second);
        }
    }
    m_last = resumed ? std::map<std::string, std::string>() : Collect();
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { Write(); });
    timer->start(Pace);
}

void CFormDraft::Write() {
    std::map<std::string, std::string> values = Collect();
    if (values == m_last) {
        return;
    }
    if (m_draft.Path.empty()) {
        (void)HostFiles().MakeFolder(Folder());
        m_draft.Path = Folder() + FromQt(QUuid::createUuid().toString(QUuid::Id128)) + Ending;
        m_draft.Lock = TakeLock(m_draft.Path);
    }
    m_last = values;
    m_draft.Values = std::move(values);
    m_draft.Time = FormatTime(Clock().LocalNow(), DatabaseTimeFormat);
    // A disk that is full is told by what is stored there in earnest.
    (void)HostFiles().WriteFile(m_draft.Path, ToText(m_draft));
}
