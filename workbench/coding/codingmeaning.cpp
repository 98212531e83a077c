#include "workbench/coding/codingmeaning.h"

#include <algorithm>
#include <cmath>

#include "defects/defectform.h"
#include "defects/recordchanges.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbCriterion.h"
#include "workbench/coding/codingmessages.h"

namespace {

constexpr int MessageNoLength = 3312;
constexpr int MessageNoEnd = 3310;
constexpr int LastHour = 12;

class CUnderstanding {
public:
    CUnderstanding(const CodingLine& line, CDbCriterion& criterion, const _TESTING_DATA& section)
        : m_line(line), m_criterion(criterion), m_section(section) {
        Meaning.Mark = line.Mark;
        Meaning.Comment = line.Comment;
        Meaning.CommentTyped = !line.Comment.empty();
    }

    void ReadDefect() {
        ReadCode();
        if (Meaning.Manhole) {
            return;
        }
        ReadGrade();
        ReadPlace();
        ReadClock();
        CheckLength(Meaning.Start.value_or(0.0F), Meaning.End.value_or(0.0F));
    }

    void ReadRunEnd(const std::vector<_REC_DATA>& openRuns) {
        const _REC_DATA* run = ChooseRun(openRuns);
        if (run != nullptr) {
            Meaning.EndedRun = run->ID;
            Meaning.Code = run->DefectCode;
            Meaning.Grade = run->DefectLevel;
            Meaning.Name = NameOf(run->DefectCode);
        }
        ReadPlace();
        if (run != nullptr && Meaning.Start) {
            Meaning.End = Meaning.Start;
            CheckLength(run->DistanceStart, *Meaning.Start);
        }
    }

    CodingMeaning Meaning;

private:
    void Add(CodingField field, std::string text) { Meaning.Problems.push_back({field, std::move(text)}); }
    static std::string Text(int message, const std::vector<std::string>& values = {}) {
        return FillText(LoadMessage(message), values);
    }

    std::string NameOf(const std::string& code) const {
        const auto found = std::find_if(m_criterion.DefectCodes.begin(), m_criterion.DefectCodes.end(),
                                        [&](const std::string& other) { return EqualNoCase(other, code); });
        return found == m_criterion.DefectCodes.end()
                   ? std::string()
                   : m_criterion
                         .DefectNames[static_cast<std::size_t>(found - m_criterion.DefectCodes.begin())];
    }

    // Whole codes; if there is none, those that begin so, manholes only if nothing else does.
    std::vector<std::size_t> Find(const std::string& typed) const {
        std::vector<std::size_t> pipes;
        std::vector<std::size_t> manholes;
        if (typed.empty()) {
            return pipes;
        }
        const std::string wanted = LowerCase(typed);
        for (std::size_t i = 0; i < m_criterion.DefectCodes.size(); ++i) {
            const std::string code = LowerCase(m_criterion.DefectCodes[i]);
            if (code == wanted) {
                return {i};
            }
            if (code.starts_with(wanted)) {
                (m_criterion.DefectTypes[i] == "JCJ" ? manholes : pipes).push_back(i);
            }
        }
        return pipes.empty() ? manholes : pipes;
    }

    void ReadCode() {
        if (m_line.Code.empty()) {
            Add(CodingField::Code, Text(CodingMessage::NoCode));
            return;
        }
        m_grade = m_line.Grade;
        std::vector<std::size_t> found = Find(m_line.Code);
        std::string code = m_line.Code;
        const auto letters = static_cast<std::size_t>(
            std::find_if(code.rbegin(), code.rend(), [](char c) { return c < '0' || c > '9'; }).base() -
            code.begin());
        if (found.empty() && letters < code.size()) {
            m_grade = code.substr(letters);
            code.resize(letters);
            found = Find(code);
        }
        if (found.size() == 1) {
            Meaning.Code = m_criterion.DefectCodes[found[0]];
            Meaning.Name = m_criterion.DefectNames[found[0]];
            Meaning.Type = m_criterion.DefectTypes[found[0]];
            Meaning.Manhole = Meaning.Type == "JCJ";
            return;
        }
        if (found.empty()) {
            Add(CodingField::Code, Text(CodingMessage::UnknownCode, {code}));
            return;
        }
        std::string choices;
        for (const std::size_t i : found) {
            Meaning.Candidates.push_back(m_criterion.DefectCodes[i]);
            choices += (choices.empty() ? "" : "  ") + m_criterion.DefectLabels[i];
        }
        Add(CodingField::Code, Text(CodingMessage::SeveralCodes, {code, choices}));
    }

    void ReadGrade() {
        if (Meaning.Code.empty()) {
            return;  // no code, no grades
        }
        std::vector<std::string> texts;
        if (!m_criterion.LoadDefectLevels(Meaning.Code, &texts, nullptr)) {
            return;
        }
        Meaning.Grades = static_cast<int>(texts.size());
        if (m_grade.empty()) {
            Add(CodingField::Grade, Text(CodingMessage::NoGrade, {FormatInt(Meaning.Grades)}));
            return;
        }
        const int grade = ParseInt(m_grade);
        if (grade < 1 || grade > Meaning.Grades) {
            Add(CodingField::Grade,
                Text(CodingMessage::UnknownGrade, {Meaning.Code, FormatInt(Meaning.Grades), m_grade}));
            return;
        }
        Meaning.Grade = grade;
        Meaning.GradeText = texts[static_cast<std::size_t>(grade) - 1];
        if (!Meaning.CommentTyped) {
            Meaning.Comment = Meaning.GradeText;  // as the form fills it in
        }
    }

    void ReadPlace() {
        Meaning.Start = Metres(m_line.Start);
        Meaning.IsRun = !m_line.End.empty();
        Meaning.End = Meaning.IsRun ? Metres(m_line.End) : Meaning.Start;
        if (!m_line.Unclear.empty()) {
            Add(CodingField::Distance, Text(CodingMessage::Unclear, {m_line.Unclear}));
        } else if (!Meaning.Start || !Meaning.End) {
            Add(CodingField::Distance, Text(CodingMessage::NoDistance));
        }
    }

    static std::optional<float> Metres(const std::string& typed) {
        if (typed.empty()) {
            return std::nullopt;
        }
        const auto metres = static_cast<float>(ParseDouble(typed));
        return std::isfinite(metres) ? std::optional(metres) : std::nullopt;
    }

    // "0003" is one place; in all others both hours are named.
    void ReadClock() {
        if (m_line.Clock.empty()) {
            return;
        }
        const int start = ParseInt(std::string_view(m_line.Clock).substr(0, 2));
        const int end = ParseInt(std::string_view(m_line.Clock).substr(2));
        if (start > LastHour || end > LastHour || end == 0) {
            Add(CodingField::Clock, Text(CodingMessage::BadClock, {m_line.Clock}));
            return;
        }
        Meaning.ClockStart = start == 0 ? end : start;
        Meaning.ClockEnd = end;
        Meaning.ClockAssumed = false;
    }

    void CheckLength(float start, float end) {
        const float length = LengthOf(m_section);
        if (!(length > 0.0F)) {
            const bool known = ParseDouble(m_section.PipeLength) > 0.0;
            Add(CodingField::Length, LoadMessage(known ? MessageNoEnd : MessageNoLength));
            return;
        }
        _REC_DATA record;
        record.DistanceStart = start;
        record.DistanceEnd = end;
        if (const auto problem = CheckDefect(0, 0, record, length)) {
            Add(CodingField::Distance, problem->Text);
        }
    }

    const _REC_DATA* ChooseRun(const std::vector<_REC_DATA>& openRuns) {
        if (openRuns.empty()) {
            Add(CodingField::Run, Text(CodingMessage::NoOpenRun));
            return nullptr;
        }
        std::vector<const _REC_DATA*> fits;
        for (std::size_t i = 0; i < openRuns.size(); ++i) {
            const std::string label = LowerCase(openRuns[i].DefectCode) + FormatInt(openRuns[i].DefectLevel);
            if ((m_line.Choice == 0 || m_line.Choice == static_cast<int>(i) + 1) &&
                label.starts_with(LowerCase(m_line.Code))) {
                fits.push_back(&openRuns[i]);
            }
        }
        if (fits.size() == 1) {
            return fits.front();
        }
        std::string choices;
        for (std::size_t i = 0; i < openRuns.size(); ++i) {
            choices += (choices.empty() ? "" : "   ") + FormatInt(static_cast<int>(i) + 1) + ": " +
                       RunLabel(openRuns[i]);
        }
        Add(CodingField::Run, Text(CodingMessage::SeveralRuns, {choices}));
        return nullptr;
    }

    const CodingLine& m_line;
    CDbCriterion& m_criterion;
    const _TESTING_DATA& m_section;
    std::string m_grade;
};

}  // namespace

CodingMeaning UnderstandCoding(const CodingLine& line, CDbCriterion& criterion, const _TESTING_DATA& section,
                               const std::vector<_REC_DATA>& openRuns) {
    CUnderstanding understanding(line, criterion, section);
    if (line.Mark == CodingLine::Run::Ends) {
        understanding.ReadRunEnd(openRuns);
    } else {
        understanding.ReadDefect();
    }
    return std::move(understanding.Meaning);
}

std::string RunLabel(const _REC_DATA& run) {
    return run.DefectCode + FormatInt(run.DefectLevel) + " " +
           FormatFixed(static_cast<double>(run.DistanceStart), 2) + " m";
}
