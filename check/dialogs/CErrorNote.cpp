#include "check/dialogs/CErrorNote.h"

#include <algorithm>

#include "check/rules.h"
#include "check/waivers.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageChecking = 3855;
constexpr int MessageErrors = 3874;
constexpr int MessageShow = 3875;
constexpr int MessageNoErrors = 3876;
constexpr std::chrono::milliseconds Slice{8};
constexpr int WhileBusy = 100;  // milliseconds between looks

}  // namespace

CErrorNote::CErrorNote(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(this, &QLabel::linkActivated, this, [this] {
        if (OnLink) {
            OnLink();
        }
    });
    connect(&m_timer, &QTimer::timeout, this, [this] { Work(); });
}

void CErrorNote::Start(CDbRec& database) {
    m_database = &database;
    CheckOptions options;
    options.Media = CheckOptions::Files::Missed;
    m_run = std::make_unique<CCheckRun>(database, options);
    setText(MessageText(MessageChecking));
    m_timer.start(0);
}

void CErrorNote::Work() {
    if (!isEnabled() || IsBlocked(*window())) {
        m_timer.setInterval(WhileBusy);
        return;
    }
    const CCheckRun::State state =
        m_run->Work(m_run->Now() == CCheckRun::State::Files ? std::chrono::milliseconds(0) : Slice);
    m_timer.setInterval(state == CCheckRun::State::Files ? WhileBusy : 0);
    if (state != CCheckRun::State::Done && state != CCheckRun::State::Failed) {
        return;
    }
    m_timer.stop();
    if (state == CCheckRun::State::Failed) {
        clear();
        return;
    }
    const CWaivers waivers(m_database->Path());
    const std::vector<CheckFinding>& findings = m_run->Findings();
    const auto errors = std::count_if(findings.begin(), findings.end(), [&](const CheckFinding& finding) {
        return SeverityOf(finding.Rule) == CheckSeverity::Error && waivers.ReasonOf(finding) == nullptr;
    });
    m_run.reset();
    if (errors == 0) {
        setText(MessageText(MessageNoErrors));
        return;
    }
    const QString text = ToQt(FillText(LoadMessage(MessageErrors), {std::to_string(errors)}));
    setText(text.toHtmlEscaped() + "&nbsp; <a href=\"errors\">" + MessageText(MessageShow).toHtmlEscaped() +
            "</a>");
}
