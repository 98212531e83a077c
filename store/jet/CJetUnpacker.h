// Takes frames apart. The process that made them may have been led astray by its file, so nothing in them is
// taken for granted. Throws CJetError.
#pragma once

#include <cstdint>
#include <string_view>

#include "store/jet/readjet.h"

class CJetUnpacker {
public:
    explicit CJetUnpacker(std::string_view bytes) : m_bytes(bytes) {}

    bool IsEnd() const { return m_bytes.empty(); }
    std::string_view Take(std::size_t size);
    template <class Number>
    Number TakeNumber() {
        Number number{};
        Take(sizeof number).copy(reinterpret_cast<char*>(&number), sizeof number);
        return number;
    }
    std::string_view TakeBytes() { return Take(TakeNumber<std::uint32_t>()); }
    std::string_view TakeText();
    // A name can stand in a statement.
    std::string TakeName();
    JetTable TakeTable();
    JetValue TakeValue();
    void ExpectEnd() const;

private:
    std::string_view m_bytes;
};
