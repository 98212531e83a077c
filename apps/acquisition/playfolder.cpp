#include "apps/acquisition/playfolder.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "apps/acquisition/CChannelClient.h"
#include "fieldimport/acquisition.h"
#include "live/liverecord.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

using Json = nlohmann::ordered_json;
using Clock = std::chrono::steady_clock;

std::vector<LiveRecord> ReadFolder(const std::string& folder) {
    for (const std::string& name : HostFiles().ListFiles(folder, ".xml")) {
        AcquisitionHeader header;
        std::vector<AcquisitionItem> items;
        if (!ReadAcquisitionXml(folder, folder + "\\" + name, header, items, [](const std::string&) {})) {
            continue;
        }
        std::vector<LiveRecord> records;
        for (const AcquisitionItem& item : items) {
            LiveRecord& record = records.emplace_back();
            record.Video = header.VideoFileName;
            record.Picture = item.PicFileName;
            record.PictureTime = ParseDouble(item.PicTime);
            record.Start = static_cast<float>(ParseDouble(item.Dist));
            record.End = static_cast<float>(ParseDouble(item.Dist) + ParseDouble(item.Len));
            std::copy_n(header.Osd.begin(), record.Texts.size(), record.Texts.begin());
        }
        if (!records.empty()) {
            return records;
        }
    }
    throw std::runtime_error("no description with defects in the folder");
}

class CPlayer {
public:
    explicit CPlayer(const PlayOptions& options) : m_options(options), m_records(ReadFolder(options.Folder)) {
        if (m_options.Records == 0) {
            m_options.Records = static_cast<int>(m_records.size());
        }
        for (int i = 0; i < std::max(1, m_options.Senders); ++i) {
            m_senders.push_back(std::make_unique<Sender>());
            m_senders.back()->Number = i + 1;
        }
    }

    int Play() {
        for (const auto& sender : m_senders) {
            if (!sender->Client.Connect()) {
                throw std::runtime_error("no live instance runs; start \"drovane -add\"");
            }
        }
        auto next = Clock::now();
        while (m_sent < m_options.Records) {
            for (int i = 0; i < std::max(1, m_options.Burst) && m_sent < m_options.Records; ++i) {
                SendOne();
            }
            next += std::chrono::milliseconds(Interval());
            Listen([&] { return Clock::now() >= next; }, next);
        }
        Listen([&] { return m_answered + m_refused >= m_sent - m_cut; }, Clock::time_point::max());
        return m_refused == 0 ? 0 : 1;
    }

private:
    struct Sender {
        int Number = 0;  // from 1
        CChannelClient Client;
        std::deque<int> Unacknowledged;
    };

    LiveRecord RecordAt(int number) const {
        const auto size = static_cast<int>(m_records.size());
        LiveRecord record = m_records[static_cast<std::size_t>(number % size)];
        record.PictureTime += number / size;  // each its own
        if (m_options.FullTexts) {
            constexpr std::size_t FieldBytes = 64;
            for (std::size_t i = 6; i < record.Texts.size(); ++i) {
                record.Texts[i].resize(FieldBytes, 'x');
            }
        }
        return record;
    }

    int Interval() const {
        if (m_options.Interval >= 0 || m_sent >= m_options.Records) {
            return std::max(0, m_options.Interval);
        }
        const double gap = RecordAt(m_sent).PictureTime - RecordAt(m_sent - 1).PictureTime;
        constexpr double Most = 60;
        return static_cast<int>(std::clamp(gap, 0.0, Most) * 1000);
    }

    void SendOne() {
        const int number = m_sent++;
        Sender& sender = *m_senders[static_cast<std::size_t>(number) % m_senders.size()];
        sender.Client.Receive();
        while (const std::optional<LiveFrame> frame = sender.Client.Next()) {
            Take(sender, *frame);
        }
        if (!sender.Client.IsOpen()) {
            // What wasn't acknowledged there never will be.
            m_refused += static_cast<int>(sender.Unacknowledged.size());
            sender.Unacknowledged.clear();
            if (!sender.Client.Connect()) {
                ++m_refused;
                return;
            }
        }
        const LiveRecord record = RecordAt(number);
        std::string block = MakeLiveBlock(record);
        if (number + 1 == m_options.Short) {
            block.resize(block.size() / 2);
            ++m_cut;
        } else {
            sender.Unacknowledged.push_back(number);
        }
        (void)sender.Client.Send(LiveFrame::Record, block);
        Tell({{"event", "sent"},
              {"record", number + 1},
              {"picture", record.Picture},
              {"time", record.PictureTime}});
        if (number + 1 == m_options.DieAfter) {
            _exit(9);  // as a crash would
        }
    }

    bool AnyOpen() const {
        return std::any_of(m_senders.begin(), m_senders.end(),
                           [](const auto& sender) { return sender->Client.IsOpen(); });
    }

    template <class Condition>
    void Listen(Condition done, Clock::time_point until) {
        // A connection that the program ended is opened anew with the next record.
        while (!done() && (AnyOpen() || until != Clock::time_point::max())) {
            std::vector<pollfd> waiting;
            for (const auto& sender : m_senders) {
                waiting.push_back({sender->Client.Descriptor(), POLLIN, 0});
            }
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
            const int most = until == Clock::time_point::max()
                                 ? 1000
                                 : static_cast<int>(std::clamp<std::int64_t>(left + 1, 0, 1000));
            (void)poll(waiting.data(), waiting.size(), most);
            for (const auto& sender : m_senders) {
                sender->Client.Receive();
                while (const std::optional<LiveFrame> frame = sender->Client.Next()) {
                    Take(*sender, *frame);
                }
            }
        }
    }

    void Take(Sender& sender, const LiveFrame& frame) {
        if (frame.Kind == LiveFrame::Answer) {
            ++m_answered;
            Tell({{"event", "answer"}, {"sender", sender.Number}, {"text", Utf8FromGbk(frame.Content)}});
        } else if (!sender.Unacknowledged.empty()) {
            const int record = sender.Unacknowledged.front();
            sender.Unacknowledged.pop_front();
            const bool taken = frame.Kind == LiveFrame::Taken;
            m_refused += taken ? 0 : 1;
            Tell({{"event", taken ? "taken" : "refused"}, {"record", record + 1}});
        }
    }

    void Tell(const Json& event) const {
        if (m_options.Json) {
            std::cout << event.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
            return;
        }
        std::cout << event["event"].get<std::string>();
        for (const char* name : {"record", "sender"}) {
            if (event.contains(name)) {
                std::cout << ' ' << name << ' ' << event[name];
            }
        }
        if (event.contains("text")) {
            std::cout << event["text"].get<std::string>();
        }
        std::cout << std::endl;
    }

    PlayOptions m_options;
    std::vector<LiveRecord> m_records;
    std::vector<std::unique_ptr<Sender>> m_senders;
    int m_sent = 0;
    int m_cut = 0;
    int m_refused = 0;
    int m_answered = 0;
};

}  // namespace

int PlayFolder(const PlayOptions& options) {
    return CPlayer(options).Play();
}
