// The process that reads files of the older engine, and its limits.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <string>

#include "shell/CUnixFile.h"
#include "store/CDbBase.h"
#include "store/jet/readjet.h"
#include "tests/support/CJetTest.h"

namespace {

using std::chrono::milliseconds;

class CCounter : public CJetReceiver {
public:
    void TakeTables(const std::vector<JetTable>& tables) override {
        for (const JetTable& table : tables) {
            Names.push_back(table.Name + "." + table.Columns.front().Name);
        }
    }
    void TakeRow(std::size_t, const std::vector<JetValue>& values) override {
        ++Rows;
        for (const JetValue& value : values) {
            Longest = std::max(Longest, value.Text.size());
        }
    }
    std::vector<std::string> Names;
    std::int64_t Rows = 0;
    std::size_t Longest = 0;
};

class JetReader : public CJetTest {
protected:
    // Why it was refused; nothing if it was read.
    std::optional<CJetError::Why> Read(const std::string& name, const JetLimits& limits) {
        m_counter = {};
        try {
            ReadJet(CUnixFile(m_folder.Host(name).string(), O_RDONLY), CDbPassword, m_counter, limits);
            return std::nullopt;
        } catch (const CJetError& error) {
            m_reason = error.what();
            return error.Reason;
        }
    }
    // A sound file whose longest memo takes the most bytes that a memo can.
    std::string WithLongMemo() {
        constexpr std::size_t pageSize = 4096;
        constexpr std::size_t pieceAt = 16;
        constexpr std::size_t pieceSize = pageSize - pieceAt - 4;
        constexpr std::size_t pieces = 4000;
        std::string file = Bytes("edge_values.mdb");
        // Where a memo tells its length: there the damaged twin of the file differs.
        const std::string twin = Bytes("bad/memo_length.mdb");
        const std::size_t head = static_cast<std::size_t>(
            std::mismatch(file.begin(), file.end(), twin.begin()).first - file.begin());
        const auto put = [](std::string& bytes, std::size_t at, std::size_t value, std::size_t size) {
            for (std::size_t i = 0; i < size; ++i) {
                bytes[at + i] = static_cast<char>(value >> (8 * i));
            }
        };
        std::size_t page = file.size() / pageSize;
        put(file, head, pieces * pieceSize, 4);  // and no flags: a chain
        put(file, head + 4, page << 8, 4);
        for (std::size_t i = 0; i < pieces; ++i) {
            std::string bytes(pageSize, '\0');
            put(bytes, 0, 0x0101, 2);
            bytes.replace(4, 4, "LVAL");
            put(bytes, 12, 1, 2);
            put(bytes, 14, pieceAt, 2);
            put(bytes, pieceAt, i + 1 < pieces ? ++page << 8 : 0, 4);
            for (std::size_t at = pieceAt + 4; at < pageSize; at += 2) {
                bytes[at] = 'a';
            }
            file += bytes;
        }
        return file;
    }

    CCounter m_counter;
    std::string m_reason;
};

TEST_F(JetReader, EndsAtItsLimits) {
    m_folder.WriteFile("big", Bytes("big_project.mdb"));
    m_folder.WriteFile("long", WithLongMemo());
    const JetLimits usual = JetLimits::ForSize(5'000'000);
    EXPECT_EQ(Read("big", usual), std::nullopt) << m_reason;
    EXPECT_EQ(m_counter.Rows, 2000 + 20000 + 1 + 23 + 61);
    EXPECT_EQ(Read("long", usual), std::nullopt) << m_reason;
    EXPECT_EQ(m_counter.Longest, 4000U * 4076 / 2);

    JetLimits limits = usual;
    limits.Processor = milliseconds(10);
    EXPECT_EQ(Read("big", limits), CJetError::Why::Limit);
    EXPECT_NE(m_reason.find("processor"), std::string::npos) << m_reason;
    limits = usual;
    limits.Wall = milliseconds(2);
    EXPECT_EQ(Read("big", limits), CJetError::Why::Limit);
    EXPECT_NE(m_reason.find("too long"), std::string::npos) << m_reason;
#ifndef __SANITIZE_ADDRESS__
    limits = usual;
    limits.Memory = 48U << 20;
    EXPECT_EQ(Read("big", limits), std::nullopt) << m_reason;
    EXPECT_EQ(Read("long", limits), CJetError::Why::Limit);
    EXPECT_NE(m_reason.find("memory"), std::string::npos) << m_reason;
#endif
}

// Bytes changed anywhere: read or refused, never a crash of ours, and never for long.
TEST_F(JetReader, SurvivesChangedBytes) {
    const std::string sound = Bytes("project_overflow.mdb");
    std::uint32_t state = 12345;
    const auto random = [&] { return state = state * 1664525U + 1013904223U, state >> 8; };
    int refused = 0;
    for (int i = 0; i < 60; ++i) {
        std::string file = sound;
        for (int change = 0; change < 1 + i % 8; ++change) {
            // Behind the header: what is wrong there is seen at once.
            file[4096 + random() % (file.size() - 4096)] = static_cast<char>(random());
        }
        m_folder.WriteFile("p", file);
        JetLimits limits = JetLimits::ForSize(file.size());
        limits.Wall = milliseconds(10'000);
        const auto why = Read("p", limits);
        refused += why ? 1 : 0;
        EXPECT_TRUE(!why || *why == CJetError::Why::Content) << i << ": " << m_reason;
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
