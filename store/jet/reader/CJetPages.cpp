#include "store/jet/reader/CJetPages.h"

#include <algorithm>

#include "store/jet/reader/CDamage.h"
#include "store/jet/reader/jetvalues.h"

namespace {

constexpr char TypeRows = 1;
constexpr std::size_t OwnerAt = 4;
constexpr std::string_view MemoOwner = "LVAL";
constexpr std::size_t RowCountAt = 12;
constexpr std::size_t SlotsAt = 14;

constexpr unsigned PlaceMask = 0x1FFF;
constexpr unsigned PointerFlag = 0x4000;
constexpr unsigned MovedFlag = 0x8000;

}  // namespace

CJetPage::CJetPage(const unsigned char* bytes) {
    std::copy_n(bytes, m_bytes.size(), reinterpret_cast<unsigned char*>(m_bytes.data()));
}

bool CJetPage::IsRowsOf(std::uint32_t owner) const {
    return m_bytes[0] == TypeRows && Stored<std::uint32_t>(View(), OwnerAt) == owner;
}

bool CJetPage::IsMemos() const {
    return m_bytes[0] == TypeRows && View().substr(OwnerAt, MemoOwner.size()) == MemoOwner;
}

std::size_t CJetPage::RowCount() const {
    const std::size_t count = Stored<std::uint16_t>(View(), RowCountAt);
    Require(SlotsAt + count * 2 <= m_bytes.size(), "more rows than a page holds");
    return count;
}

CJetPage::Slot CJetPage::Row(std::size_t row) const {
    const std::size_t count = RowCount();
    Require(row < count, "no such row");
    const unsigned word = Stored<std::uint16_t>(View(), SlotsAt + row * 2);
    const std::size_t start = word & PlaceMask;
    const std::size_t end =
        row == 0 ? m_bytes.size() : Stored<std::uint16_t>(View(), SlotsAt + (row - 1) * 2) & PlaceMask;
    Require(start >= SlotsAt + count * 2 && start <= end && end <= m_bytes.size(), "a row out of its page");
    const bool pointer = (word & PointerFlag) != 0;
    const bool moved = (word & MovedFlag) != 0;
    return {View().substr(start, end - start), pointer && moved, pointer && !moved, moved && !pointer};
}

CJetPages::CJetPages(const char* hostPath, const JetHeader& header)
    : m_handle(mdb_open(hostPath, MDB_NOFLAGS)), m_count(header.Pages), m_left(header.Pages * JetPageSize) {
    Require(m_handle != nullptr && m_handle->f != nullptr && IS_JET4(m_handle.get()), "can't be opened");
}

CJetPage CJetPages::Read(std::uint32_t page) const {
    // The library takes what lies right behind the end for a page of zeros, and remembers a page that it
    // couldn't read as read.
    Require(Has(page) && mdb_read_alt_pg(m_handle.get(), page) == static_cast<ssize_t>(JetPageSize),
            "a page that isn't there");
    return CJetPage(m_handle->alt_pg_buf);
}

void CJetPages::Spend(std::size_t bytes) {
    Require(bytes <= m_left, "more content than the file can hold");
    m_left -= bytes;
}
