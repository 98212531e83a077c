// The findings of a check as a tree: severities, their rules, and what each found, with counts.
#pragma once

#include <QAbstractItemModel>
#include <QString>
#include <map>
#include <optional>
#include <vector>

#include "check/finding.h"

class CWaivers;

class CCheckModel : public QAbstractItemModel {
public:
    enum Column { Text, Section, Record, Reason, ColumnCount };

    struct Row {
        CheckFinding Finding;
        QString SectionText;
        QString RecordText;
        QString ReasonText;  // why it is left as it is; empty if it isn't
        QString Searched;    // in lower case
    };

    explicit CCheckModel(QObject* parent);

    // Behind those that are there.
    void Add(std::vector<Row> rows);
    // Instead of those that are there.
    void Replace(std::vector<Row> rows);
    // Only rows that have each of these words; and those that are left as they are, or not.
    void Filter(const QString& text, bool waivedToo);

    // Of what is not left as it is, whether it is shown or not.
    int Count(CheckSeverity severity) const { return m_counts[static_cast<std::size_t>(severity)]; }
    bool IsEmpty() const { return m_groups.empty(); }

    // Null for a severity or a rule.
    const Row* RowAt(const QModelIndex& index) const;
    // That of a rule's or a finding's row; 0 for a severity.
    static int RuleAt(const QModelIndex& index);
    // All that are shown at an index or below it.
    std::vector<CheckFinding> FindingsAt(const QModelIndex& index) const;
    QModelIndex IndexOf(const CheckFinding& finding) const;
    QModelIndex IndexOfRule(int rule) const;
    QModelIndex First() const;  // of the findings
    // Marks the rows anew.
    void Mark(const CWaivers& waivers);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    using Group = std::vector<std::size_t>;  // of m_rows

    bool IsShown(const Row& row) const;
    void Regroup();
    void AddGroup(int rule, Group places);
    std::vector<CheckSeverity> Severities() const;
    std::vector<int> RulesOf(CheckSeverity severity) const;
    int CountOf(CheckSeverity severity) const;
    QString TextOf(const QModelIndex& index) const;

    std::vector<Row> m_rows;
    std::map<int, Group> m_groups;  // by rule; none is empty
    std::vector<QString> m_words;
    bool m_waivedToo = false;
    int m_counts[3] = {};
};
