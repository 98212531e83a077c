// Who listens while a section is scored. The evaluation calls these at every turn; NoRecorder is nothing at
// all to the compiler, so that a grade costs no more where nobody asks how it came about.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "assessment/derivation.h"
#include "store/records/records.h"

class NoRecorder {
public:
    void Select(const _REC_DATA&, CountReason, bool) {}
    void BeginGroup(bool) {}
    void Append(std::size_t, float) {}
    void Merge(std::size_t, float) {}
    template <class List>
    void Items(const List&) {}
    void SetGap(std::size_t, float) {}
    void SetNear(std::size_t) {}
    void Value(const char*, float) {}
    void Common(const char*, float) {}
    void Band(const char*, float, int, std::span<const float>, bool) {}
};

class CDerivationRecorder {
public:
    explicit CDerivationRecorder(Derivation& out) : m_out(out) { m_out = {}; }

    // Each record, in the order of entry.
    void Select(const _REC_DATA& record, CountReason reason, bool structural) {
        if (reason == CountReason::Counted) {
            (structural ? m_structural : m_functional).push_back(m_out.Records.size());
        }
        DerivedRecord derived;
        derived.ID = record.ID;
        derived.Reason = reason;
        derived.Structural = structural;
        derived.Weightless = reason == CountReason::Counted && record.Evaluate == 0.0F;
        m_out.Records.push_back(derived);
    }
    void BeginGroup(bool structural) {
        m_group = structural ? &m_out.Structural : &m_out.Functional;
        m_selected = structural ? &m_structural : &m_functional;
        m_first = 0;
    }
    // The n-th defect of the group stands for itself, so far from the end that it was measured against.
    void Append(std::size_t n, float gap) {
        m_first = Selected(n).ID;
        Selected(n).Gap = gap;
    }
    // It has become a part of the item before.
    void Merge(std::size_t n, float gap) {
        Selected(n).MergedInto = m_first;
        Selected(n).Gap = gap;
    }
    // As they are after merging.
    template <class List>
    void Items(const List& items) {
        std::size_t at = 0;
        for (const std::size_t record : *m_selected) {
            const DerivedRecord& derived = m_out.Records[record];
            if (derived.MergedInto < 0 && at < items.size()) {
                const auto& item = items[at++];
                m_group->Items.push_back({derived.ID, item.start, item.end, item.score, 0.0F, false});
            }
        }
    }
    void SetGap(std::size_t item, float gap) { m_group->Items[item].Gap = gap; }
    void SetNear(std::size_t item) { m_group->Items[item].Near = true; }
    void Value(const char* name, float value) { m_group->Values.push_back({name, value}); }
    void Common(const char* name, float value) { m_out.Common.push_back({name, value}); }
    // `limits` rise; with `upperBelongs` a limit belongs to the band below it.
    void Band(const char* name, float value, int band, std::span<const float> limits, bool upperBelongs) {
        const auto place = static_cast<std::size_t>(band);
        m_out.Bands.push_back({name, value, band, place == 0 ? 0.0F : limits[place - 1],
                               place < limits.size() ? limits[place] : std::numeric_limits<float>::infinity(),
                               upperBelongs});
    }

private:
    DerivedRecord& Selected(std::size_t n) { return m_out.Records[(*m_selected)[n]]; }

    Derivation& m_out;
    std::vector<std::size_t> m_structural;  // places of the records that count
    std::vector<std::size_t> m_functional;
    DerivedGroup* m_group = nullptr;
    const std::vector<std::size_t>* m_selected = nullptr;
    std::int32_t m_first = 0;  // ID of the first record of the item in hand
};
