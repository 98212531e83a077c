#include "check/dialogs/CCheckModel.h"

#include <QBrush>
#include <QFont>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "check/rules.h"
#include "check/waivers.h"
#include "shell/dialogs/qttext.h"

namespace {

constexpr int MessageErrors = 3850;  // and the two more
constexpr int MessageColumns = 3860;

// What an index stands for is its internal ID: a severity, a rule, or a finding of a rule.
constexpr quintptr SeverityId = 1'000'000;
constexpr quintptr RuleId = 2'000'000;
constexpr quintptr FindingId = 3'000'000;

enum class Level { Severity, Rule, Finding };

Level LevelOf(const QModelIndex& index) {
    const quintptr id = index.internalId();
    return id < RuleId ? Level::Severity : id < FindingId ? Level::Rule : Level::Finding;
}

int NumberOf(const QModelIndex& index) {
    return static_cast<int>(index.internalId() % SeverityId);
}

}  // namespace

CCheckModel::CCheckModel(QObject* parent) : QAbstractItemModel(parent) {}

bool CCheckModel::IsShown(const Row& row) const {
    return (m_waivedToo || row.ReasonText.isEmpty()) &&
           std::all_of(m_words.begin(), m_words.end(), [&](const QString& word) {
               return row.Searched.contains(word) || row.ReasonText.contains(word, Qt::CaseInsensitive);
           });
}

void CCheckModel::Regroup() {
    m_groups.clear();
    std::fill(std::begin(m_counts), std::end(m_counts), 0);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Row& row = m_rows[i];
        m_counts[static_cast<std::size_t>(SeverityOf(row.Finding.Rule))] += row.ReasonText.isEmpty() ? 1 : 0;
        if (IsShown(row)) {
            m_groups[row.Finding.Rule].push_back(i);
        }
    }
}

// The rows of a rule come in one piece: views look at all that they show for each piece.
void CCheckModel::Add(std::vector<Row> rows) {
    std::map<int, Group> shown;
    for (Row& row : rows) {
        m_counts[static_cast<std::size_t>(SeverityOf(row.Finding.Rule))] += row.ReasonText.isEmpty() ? 1 : 0;
        if (IsShown(row)) {
            shown[row.Finding.Rule].push_back(m_rows.size());
        }
        m_rows.push_back(std::move(row));
    }
    for (auto& [rule, places] : shown) {
        const auto group = m_groups.find(rule);
        if (group == m_groups.end()) {
            AddGroup(rule, std::move(places));
            continue;
        }
        const int first = static_cast<int>(group->second.size());
        beginInsertRows(IndexOfRule(rule), first, first + static_cast<int>(places.size()) - 1);
        group->second.insert(group->second.end(), places.begin(), places.end());
        endInsertRows();
    }
}

// A row of its own for the rule, perhaps also one for its severity.
void CCheckModel::AddGroup(int rule, Group places) {
    const CheckSeverity severity = SeverityOf(rule);
    const std::vector<CheckSeverity> severities = Severities();
    const auto at = std::lower_bound(severities.begin(), severities.end(), severity);
    const int top = static_cast<int>(at - severities.begin());
    if (at == severities.end() || *at != severity) {
        beginInsertRows({}, top, top);
    } else {
        const std::vector<int> rules = RulesOf(severity);
        const int in = static_cast<int>(std::lower_bound(rules.begin(), rules.end(), rule) - rules.begin());
        beginInsertRows(index(top, 0), in, in);
    }
    m_groups[rule] = std::move(places);
    endInsertRows();
}

void CCheckModel::Replace(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    Regroup();
    endResetModel();
}

void CCheckModel::Filter(const QString& text, bool waivedToo) {
    beginResetModel();
    m_words.clear();
    for (const QString& word : text.toLower().split(' ', Qt::SkipEmptyParts)) {
        m_words.push_back(word);
    }
    m_waivedToo = waivedToo;
    Regroup();
    endResetModel();
}

void CCheckModel::Mark(const CWaivers& waivers) {
    beginResetModel();
    for (Row& row : m_rows) {
        const std::string* reason = waivers.ReasonOf(row.Finding);
        row.ReasonText = reason == nullptr ? QString() : ToQt(*reason);
    }
    Regroup();
    endResetModel();
}

std::vector<CheckSeverity> CCheckModel::Severities() const {
    std::vector<CheckSeverity> severities;
    for (const auto& [rule, rows] : m_groups) {
        severities.push_back(SeverityOf(rule));
    }
    std::sort(severities.begin(), severities.end());
    severities.erase(std::unique(severities.begin(), severities.end()), severities.end());
    return severities;
}

std::vector<int> CCheckModel::RulesOf(CheckSeverity severity) const {
    std::vector<int> rules;
    for (const auto& [rule, rows] : m_groups) {
        if (SeverityOf(rule) == severity) {
            rules.push_back(rule);
        }
    }
    return rules;
}

int CCheckModel::CountOf(CheckSeverity severity) const {
    std::size_t count = 0;
    for (const auto& [rule, rows] : m_groups) {
        count += SeverityOf(rule) == severity ? rows.size() : 0;
    }
    return static_cast<int>(count);
}

const CCheckModel::Row* CCheckModel::RowAt(const QModelIndex& index) const {
    if (!index.isValid() || LevelOf(index) != Level::Finding) {
        return nullptr;
    }
    const auto group = m_groups.find(NumberOf(index));
    const auto row = static_cast<std::size_t>(index.row());
    return group == m_groups.end() || row >= group->second.size() ? nullptr : &m_rows[group->second[row]];
}

int CCheckModel::RuleAt(const QModelIndex& index) {
    return !index.isValid() || LevelOf(index) == Level::Severity ? 0 : NumberOf(index);
}

std::vector<CheckFinding> CCheckModel::FindingsAt(const QModelIndex& index) const {
    std::vector<CheckFinding> findings;
    if (const Row* row = RowAt(index)) {
        findings.push_back(row->Finding);
    } else if (index.isValid() && LevelOf(index) == Level::Rule) {
        for (const std::size_t place : m_groups.at(NumberOf(index))) {
            findings.push_back(m_rows[place].Finding);
        }
    } else if (index.isValid()) {
        for (int i = 0; i < rowCount(index); ++i) {
            const std::vector<CheckFinding> some = FindingsAt(this->index(i, 0, index));
            findings.insert(findings.end(), some.begin(), some.end());
        }
    }
    return findings;
}

QModelIndex CCheckModel::IndexOfRule(int rule) const {
    const std::vector<int> rules = RulesOf(SeverityOf(rule));
    const auto at = std::find(rules.begin(), rules.end(), rule);
    return at == rules.end()
               ? QModelIndex()
               : createIndex(static_cast<int>(at - rules.begin()), 0, RuleId + static_cast<quintptr>(rule));
}

QModelIndex CCheckModel::IndexOf(const CheckFinding& finding) const {
    if (const auto group = m_groups.find(finding.Rule); group != m_groups.end()) {
        for (std::size_t i = 0; i < group->second.size(); ++i) {
            if (m_rows[group->second[i]].Finding == finding) {
                return createIndex(static_cast<int>(i), 0, FindingId + static_cast<quintptr>(finding.Rule));
            }
        }
    }
    return {};
}

QModelIndex CCheckModel::First() const {
    return index(0, 0, index(0, 0, index(0, 0)));
}

QModelIndex CCheckModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column < 0 || column >= ColumnCount) {
        return {};
    }
    if (!parent.isValid()) {
        return createIndex(row, column,
                           SeverityId + static_cast<quintptr>(Severities()[static_cast<std::size_t>(row)]));
    }
    if (LevelOf(parent) == Level::Severity) {
        const std::vector<int> rules = RulesOf(static_cast<CheckSeverity>(NumberOf(parent)));
        return createIndex(row, column, RuleId + static_cast<quintptr>(rules[static_cast<std::size_t>(row)]));
    }
    return createIndex(row, column, FindingId + static_cast<quintptr>(NumberOf(parent)));
}

QModelIndex CCheckModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || LevelOf(child) == Level::Severity) {
        return {};
    }
    if (LevelOf(child) == Level::Finding) {
        return IndexOfRule(NumberOf(child));
    }
    const CheckSeverity severity = SeverityOf(NumberOf(child));
    const std::vector<CheckSeverity> severities = Severities();
    const auto at = std::find(severities.begin(), severities.end(), severity);
    return at == severities.end() ? QModelIndex()
                                  : createIndex(static_cast<int>(at - severities.begin()), 0,
                                                SeverityId + static_cast<quintptr>(severity));
}

int CCheckModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) {
        return static_cast<int>(Severities().size());
    }
    if (parent.column() > 0 || LevelOf(parent) == Level::Finding) {
        return 0;
    }
    if (LevelOf(parent) == Level::Severity) {
        return static_cast<int>(RulesOf(static_cast<CheckSeverity>(NumberOf(parent))).size());
    }
    const auto group = m_groups.find(NumberOf(parent));
    return group == m_groups.end() ? 0 : static_cast<int>(group->second.size());
}

int CCheckModel::columnCount(const QModelIndex& /*parent*/) const {
    return ColumnCount;
}

QString CCheckModel::TextOf(const QModelIndex& index) const {
    if (const Row* row = RowAt(index)) {
        switch (index.column()) {
            case Text:
                return ToQt(FindingDetail(row->Finding));
            case Section:
                return row->SectionText;
            case Record:
                return row->RecordText;
            default:
                return row->ReasonText;
        }
    }
    if (index.column() != Text) {
        return {};
    }
    if (LevelOf(index) == Level::Severity) {
        const auto severity = static_cast<CheckSeverity>(NumberOf(index));
        return MessageText(MessageErrors + NumberOf(index)) + " (" + QString::number(CountOf(severity)) + ")";
    }
    return ToQt(RuleName(NumberOf(index))) + " (" + QString::number(rowCount(index)) + ")";
}

QVariant CCheckModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return TextOf(index).simplified();
        case Qt::FontRole:
            if (LevelOf(index) == Level::Severity) {
                QFont font;
                font.setBold(true);
                return font;
            }
            return {};
        case Qt::ForegroundRole:
            if (const Row* row = RowAt(index); row != nullptr && !row->ReasonText.isEmpty()) {
                return QPalette().brush(QPalette::Disabled, QPalette::Text);
            }
            return {};
        default:
            return {};
    }
}

QVariant CCheckModel::headerData(int section, Qt::Orientation orientation, int role) const {
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? QVariant(MessageText(MessageColumns + section))
               : QVariant();
}
