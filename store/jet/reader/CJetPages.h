// The pages of one file, read (and decoded, if the file is encoded) by the library. Nothing that a page
// says is believed: page numbers are checked against the file, places of rows against their page, and all
// rows and memos together against the size of the file, so that no arrangement of pointers makes the work
// longer than the file.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "store/jet/reader/jetheader.h"

// The library's header can't be read within `extern "C"` unless this one was before it.
#include <glib.h>
#include <mdbtools.h>

// A page of rows. They stand from its end towards its beginning, where their places are told.
class CJetPage {
public:
    struct Slot {
        std::string_view Bytes;
        bool Deleted;
        bool IsPointer;  // the row has moved: four bytes say where to
        bool IsMoved;    // a moved row in its new place
    };

    explicit CJetPage(const unsigned char* bytes);
    CJetPage() = default;

    bool IsRowsOf(std::uint32_t owner) const;
    bool IsMemos() const;
    std::size_t RowCount() const;
    // Throws CDamage.
    Slot Row(std::size_t row) const;

private:
    std::string_view View() const { return {m_bytes.data(), m_bytes.size()}; }

    std::array<char, JetPageSize> m_bytes{};
};

class CJetPages {
public:
    // Throws CDamage if the library refuses the file.
    CJetPages(const char* hostPath, const JetHeader& header);

    MdbHandle* Handle() const { return m_handle.get(); }
    bool Has(std::uint32_t page) const { return page > 0 && page < m_count; }
    // Throws CDamage.
    CJetPage Read(std::uint32_t page) const;
    // Counts bytes of rows and memos. Throws CDamage if there can't be as many in the file.
    void Spend(std::size_t bytes);

private:
    struct Closer {
        void operator()(MdbHandle* handle) const { mdb_close(handle); }
    };
    std::unique_ptr<MdbHandle, Closer> m_handle;
    std::uint64_t m_count;
    std::uint64_t m_left;
};
