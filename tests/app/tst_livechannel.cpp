#include <gtest/gtest.h>

#include <QLocalServer>
#include <utility>

#include "shell/dialogs/CLocalLiveChannel.h"
#include "tests/app/CAcquisition.h"
#include "tests/app/CRuntimeFolder.h"
#include "tests/support/windows.h"

namespace {

namespace fs = std::filesystem;
using Claimed = CLiveChannel::Claimed;

const std::string Taken = CAcquisition::Frame(3, "");

class LiveChannel : public testing::Test {
protected:
    void Claim() {
        ASSERT_EQ(m_channel.Claim(), Claimed::Yes) << m_channel.Problem();
        m_channel.OnRecord = [this](std::string_view record, LiveSender sender) {
            m_records.emplace_back(std::string(record), sender);
            return true;
        };
    }
    static std::string Record(unsigned char seed) {
        std::string record(1256, '\0');
        for (std::size_t i = 0; i < record.size(); ++i) {
            record[i] = static_cast<char>(seed + i);
        }
        return record;
    }
    static bool Gets(CAcquisition& program, const std::string& bytes) {
        return WaitFor([&] { return program.Receive() && program.Received == bytes; });
    }
    static bool IsDropped(CAcquisition& program) {
        return WaitFor([&] { return !program.Receive(); });
    }

    CTestFolder m_folder;
    CRuntimeFolder m_runtime{m_folder};
    CLocalLiveChannel m_channel;
    std::vector<std::pair<std::string, LiveSender>> m_records;
};

TEST_F(LiveChannel, RecordsComeWholeHoweverTheyAreSent) {
    Claim();
    CAcquisition program(m_runtime.Socket());
    const std::string frame = CAcquisition::Frame(1, Record(1));
    for (const std::size_t piece : {frame.size(), std::size_t{500}, std::size_t{5}}) {
        m_records.clear();
        program.Received.clear();
        for (std::size_t at = 0; at < frame.size(); at += piece) {
            ASSERT_TRUE(program.Send(frame.substr(at, piece)));
            if (at < 3 * piece) {
                WaitFor(5);
            }
        }
        ASSERT_TRUE(Gets(program, Taken)) << piece;
        ASSERT_EQ(m_records.size(), 1U);
        EXPECT_EQ(m_records[0].first, Record(1));
    }

    // Many at once, from one that doesn't wait for anything.
    m_records.clear();
    constexpr unsigned char Count = 40;
    {
        const CAcquisition hasty(m_runtime.Socket());
        std::string frames;
        for (unsigned char seed = 0; seed < Count; ++seed) {
            frames += CAcquisition::Frame(1, Record(seed));
        }
        ASSERT_TRUE(hasty.Send(frames));
    }
    ASSERT_TRUE(WaitFor([&] { return m_records.size() == Count; })) << m_records.size();
    for (unsigned char seed = 0; seed < Count; ++seed) {
        EXPECT_EQ(m_records[seed].first, Record(seed));
    }
}

TEST_F(LiveChannel, TheAnswerGoesToTheSenderWheneverItComes) {
    Claim();
    CAcquisition first(m_runtime.Socket());
    CAcquisition second(m_runtime.Socket());
    ASSERT_TRUE(first.Send(CAcquisition::Frame(1, Record(1))));
    ASSERT_TRUE(Gets(first, Taken));
    ASSERT_TRUE(second.Send(CAcquisition::Frame(1, Record(2))));
    ASSERT_TRUE(Gets(second, Taken));
    ASSERT_EQ(m_records.size(), 2U);
    EXPECT_NE(m_records[0].second, m_records[1].second);

    WaitFor(300);
    EXPECT_TRUE(m_channel.Answer(m_records[0].second, "\r\n\xC6\xC6\xC1\xD1 PL"));
    EXPECT_TRUE(m_channel.Answer(m_records[1].second, std::string(100'000, 'x')));
    m_channel.Release();  // what was said still arrives
    EXPECT_FALSE(m_channel.Answer(m_records[0].second, "late"));
    EXPECT_TRUE(IsDropped(first));
    EXPECT_EQ(first.Received, Taken + CAcquisition::Frame(4, "\r\n\xC6\xC6\xC1\xD1 PL"));
    EXPECT_TRUE(IsDropped(second));
    EXPECT_EQ(second.Received, Taken + CAcquisition::Frame(4, std::string(100'000, 'x')));
}

TEST_F(LiveChannel, JunkEndsItsOwnConnectionOnly) {
    Claim();
    CAcquisition program(m_runtime.Socket());
    const std::string junk[] = {
        CAcquisition::Frame(1, std::string(1255, 'x')),
        CAcquisition::Frame(1, std::string(1257, 'x')),
        CAcquisition::Frame(2, "x"),
        CAcquisition::Frame(0x01000000, Record(1)),
        CAcquisition::Number(1) + CAcquisition::Number(0xFFFFFFFF),
        "GET / HTTP/1.1\r\n\r\n",
        std::string(100'000, '\xFF'),
    };
    for (const std::string& bytes : junk) {
        CAcquisition other(m_runtime.Socket());
        (void)other.Send(bytes);
        EXPECT_TRUE(IsDropped(other)) << bytes.substr(0, 8);
    }
    {
        const CAcquisition unfinished(m_runtime.Socket());
        ASSERT_TRUE(unfinished.Send(CAcquisition::Frame(1, Record(1)).substr(0, 700)));
        WaitFor(20);
    }
    EXPECT_TRUE(m_records.empty());
    ASSERT_TRUE(program.Send(CAcquisition::Frame(1, Record(7))));
    ASSERT_TRUE(Gets(program, Taken));
    ASSERT_EQ(m_records.size(), 1U);

    // The window closes over a record.
    int handled = 0;
    m_channel.OnRecord = [&](std::string_view, LiveSender) {
        ++handled;
        m_channel.Release();
        return true;
    };
    ASSERT_TRUE(program.Send(CAcquisition::Frame(1, Record(8)) + CAcquisition::Frame(1, Record(9))));
    EXPECT_TRUE(IsDropped(program));
    EXPECT_EQ(handled, 1);
    EXPECT_FALSE(m_channel.Answer(m_records[0].second, "x"));
}

TEST_F(LiveChannel, LiesWhereNobodyElseCanWrite) {
    EXPECT_EQ(CLocalLiveChannel::SocketPath().toStdString(), m_runtime.Socket().string());
    fs::permissions(m_runtime.Path(), fs::perms::group_write, fs::perm_options::add);
    const fs::path elsewhere = CLocalLiveChannel::SocketPath().toStdString();
    EXPECT_EQ(elsewhere.parent_path().parent_path(), fs::temp_directory_path());
    EXPECT_EQ(fs::status(elsewhere.parent_path()).permissions(), fs::perms::owner_all);

    // Names of sockets are short; a folder that is too deep is told and not
    // crashed over.
    const fs::path deep = m_runtime.Path() / std::string(120, 'x');
    fs::create_directory(deep);
    qputenv("XDG_RUNTIME_DIR", deep.c_str());
    EXPECT_FALSE(m_channel.RaiseRunning());
    EXPECT_EQ(m_channel.Claim(), Claimed::NotPossible);
    EXPECT_NE(m_channel.Problem().find("DROVANEWNDCLASS"), std::string::npos);
}

}  // namespace
