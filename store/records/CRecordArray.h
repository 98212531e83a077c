// The array of all record types: owns its elements by value; a copy is deep.
#pragma once

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <utility>
#include <vector>

template <class Record>
class CRecordArray {
public:
    // Both throw std::invalid_argument outside 0 to GetUpperBound().
    Record& operator[](int index) { return m_records[Checked(index)]; }
    const Record& operator[](int index) const { return m_records[Checked(index)]; }

    int GetSize() const { return static_cast<int>(m_records.size()); }
    int GetUpperBound() const { return GetSize() - 1; }  // -1 when empty
    bool IsEmpty() const { return m_records.empty(); }

    void SetSize(int size) {
        if (size < 0) {
            throw std::invalid_argument("negative array size");
        }
        const auto wanted = static_cast<std::size_t>(size);
        if (wanted > m_records.capacity()) {
            const std::size_t step = std::clamp<std::size_t>(m_records.size() / 8, 4, 1024);
            m_records.reserve(std::max(wanted, m_records.capacity() + step));
        }
        m_records.resize(wanted);
    }
    // Returns the index of the new element.
    int Add(Record record) {
        SetSize(GetSize() + 1);
        m_records.back() = std::move(record);
        return GetUpperBound();
    }
    void RemoveAt(int index) {
        m_records.erase(m_records.begin() + static_cast<std::ptrdiff_t>(Checked(index)));
    }
    void RemoveAll() { m_records.clear(); }

    auto begin() { return m_records.begin(); }
    auto end() { return m_records.end(); }
    auto begin() const { return m_records.begin(); }
    auto end() const { return m_records.end(); }

private:
    std::size_t Checked(int index) const {
        if (index < 0 || index >= GetSize()) {
            throw std::invalid_argument("array index out of range");
        }
        return static_cast<std::size_t>(index);
    }

    std::vector<Record> m_records;
};
