#include "store/jet/readjet.h"

#include "shell/textcodec.h"
#include "store/jet/CJetProcess.h"
#include "store/jet/CJetUnpacker.h"

namespace {

using std::chrono::milliseconds;

// Of a process that sends no end: a truth value takes a bit in the file and nine bytes here.
constexpr std::uint64_t MostStreamPerByte = 128;

[[noreturn]] void Refuse(const std::string& text) {
    throw CJetError(CJetError::Why::Content, text);
}

class CJetStream {
public:
    CJetStream(const CUnixFile& file, const JetLimits& limits, std::uint64_t fileSize, CJetReceiver& receiver)
        : m_process(file, limits),
          m_left(fileSize * MostStreamPerByte),
          m_mostFrame(limits.Memory),
          m_receiver(receiver) {}

    void Read(std::string_view password) {
        TakePassword(password);
        JetTag tag = NextFrame();
        for (; tag == JetTag::Table; tag = NextFrame()) {
            m_tables.push_back(m_frame.TakeTable());
            m_frame.ExpectEnd();
        }
        m_counts.resize(m_tables.size());
        m_receiver.TakeTables(m_tables);
        for (; tag == JetTag::Row; tag = NextFrame()) {
            TakeRow();
        }
        Expect(tag == JetTag::End);
        m_frame.ExpectEnd();
        for (std::size_t i = 0; i < m_tables.size(); ++i) {
            Expect(m_counts[i] == m_tables[i].Rows);
        }
        m_process.Finish(m_pulse);
    }

private:
    static void Expect(bool sound) {
        if (!sound) {
            Refuse("the reader sent what can't be");
        }
    }

    JetTag NextFrame() {
        const auto size =
            CJetUnpacker(m_process.Read(sizeof(std::uint32_t), m_pulse)).TakeNumber<std::uint32_t>();
        Expect(size >= 1 && size <= m_left && size <= m_mostFrame);
        m_left -= size;
        m_frame = CJetUnpacker(m_process.Read(size, m_pulse));
        const auto tag = static_cast<JetTag>(m_frame.TakeNumber<std::uint8_t>());
        if (tag == JetTag::Refusal) {
            Refuse(std::string(m_frame.TakeText()));
        }
        return tag;
    }

    void TakePassword(std::string_view password) {
        Expect(NextFrame() == JetTag::Password);
        const std::string_view own = m_frame.TakeText();
        if (!own.empty() && own != password) {
            Refuse("another password");
        }
        m_frame.ExpectEnd();
    }

    void TakeRow() {
        constexpr std::int64_t rowsBetweenPulses = 256;
        const std::size_t table = m_frame.TakeNumber<std::uint16_t>();
        Expect(table < m_tables.size() && ++m_counts[table] <= m_tables[table].Rows);
        m_values.resize(m_tables[table].Columns.size());
        for (JetValue& value : m_values) {
            value = m_frame.TakeValue();
        }
        m_frame.ExpectEnd();
        m_receiver.TakeRow(table, m_values);
        if (m_counts[table] % rowsBetweenPulses == 0) {
            m_receiver.Pulse();
        }
    }

    CJetProcess m_process;
    std::uint64_t m_left;
    std::uint64_t m_mostFrame;  // nobody sends more at once than he can hold
    CJetReceiver& m_receiver;
    std::function<void()> m_pulse = [this] { m_receiver.Pulse(); };
    CJetUnpacker m_frame{{}};
    std::vector<JetTable> m_tables;
    std::vector<std::int64_t> m_counts;
    std::vector<JetValue> m_values;
};

std::uint64_t SizeOf(const CUnixFile& file) {
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode)) {
        throw CJetError(CJetError::Why::Machine, "no file");
    }
    return static_cast<std::uint64_t>(state.st_size);
}

}  // namespace

JetLimits JetLimits::ForSize(std::uint64_t bytes) {
    // Five megabytes take a tenth of a second on a common machine.
    constexpr std::uint64_t slowestBytesPerMillisecond = 5000;
    JetLimits limits;
    limits.Processor = milliseconds(5000 + bytes / slowestBytesPerMillisecond);
    limits.Wall = milliseconds(10'000) + 2 * limits.Processor;
    return limits;
}

void ReadJet(const CUnixFile& file, std::string_view password, CJetReceiver& receiver) {
    ReadJet(file, password, receiver, JetLimits::ForSize(SizeOf(file)));
}

void ReadJet(const CUnixFile& file, std::string_view password, CJetReceiver& receiver,
             const JetLimits& limits) {
    CJetStream(file, limits, SizeOf(file), receiver).Read(password);
}
