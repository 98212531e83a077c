// What a client would send back, beside the review window while it goes on: fills while the check runs, and
// each finding leads to its place. What is mended disappears.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "check/CCheckRun.h"
#include "check/dialogs/CCheckModel.h"
#include "check/waivers.h"
#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class QCheckBox;
class QLabel;
class QLineEdit;
class QTreeView;

class CDlgCheck : public CSizeDlg {
public:
    static constexpr int IdTree = 5071;
    static constexpr int IdFilter = 5072;
    static constexpr int IdWaivedToo = 5073;
    static constexpr int IdAdvice = 5074;
    static constexpr int IdWaive = 5075;
    static constexpr int IdMend = 5076;
    static constexpr int IdGoTo = 5077;
    static constexpr int IdState = 5078;

    explicit CDlgCheck(QWidget* parent);
    ~CDlgCheck() override;

    // The operator chose a finding; his place in the project is the caller's concern.
    std::function<void(const CheckFinding&)> OnGoTo;
    // Changes the project, as a command of the caller does.
    std::function<void(const std::function<void()>& change)> OnChange;

    // The project that is open and as it is now; null for none. While the window is shown it is checked anew
    // if it isn't as it was. The database outlives the window, or is replaced here first.
    void Follow(CDbRec* database, bool canChange);
    // Brings the window up, with the focus in the findings.
    void Come();

protected:
    void OnOK() override { GoTo(); }
    void OnCancel() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MakeControls();
    void Start();
    void Stop();
    void Work();
    void TakeFindings(bool whole);
    CCheckModel::Row MakeRow(const CheckFinding& finding) const;
    // What `change` does to the tree leaves the operator on his finding, or where it was.
    void Keep(const std::function<void()>& change);
    void StandOn(const QModelIndex& index);
    void ShowState();
    void UpdateControls();
    std::vector<CheckFinding> Selected() const;
    void GoTo();
    void Waive();
    void Mend();

    CDbRec* m_database = nullptr;
    bool m_canChange = false;
    std::unique_ptr<CWaivers> m_waivers;
    std::shared_ptr<CMediaMemory> m_memory = std::make_shared<CMediaMemory>();
    std::unique_ptr<CCheckRun> m_run;
    std::optional<std::int64_t> m_checked;  // the change count that the findings are of
    std::unordered_map<std::int32_t, const SectionRecords*> m_sections;  // of the run's snapshot
    std::size_t m_taken = 0;                                             // of the run's findings
    bool m_again = false;  // the findings of an earlier run are shown until this one is through
    QElapsedTimer m_since;
    QTimer m_timer;

    CCheckModel* m_model = nullptr;
    QTreeView* m_tree = nullptr;
    QLineEdit* m_filter = nullptr;
    QCheckBox* m_waivedToo = nullptr;
    QLabel* m_advice = nullptr;
    QLabel* m_state = nullptr;
};
