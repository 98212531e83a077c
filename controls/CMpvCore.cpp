#include "controls/CMpvCore.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <QImage>
#include <QTransform>
#include <algorithm>
#include <clocale>
#include <cstring>
#include <utility>

namespace {

enum Observed : std::uint64_t { Time = 1, Duration, AtEnd };  // below the numbers of replies
constexpr std::uint64_t FirstReply = 100;

constexpr std::pair<const char*, const char*> Options[] = {
    {"vo", "libmpv"},
    {"hwdec", "no"},
    {"idle", "yes"},
    {"pause", "yes"},
    {"keep-open", "yes"},  // stays on the last frame
    {"config", "no"},
    {"terminal", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"input-default-bindings", "no"},
    {"osd-level", "0"},
    {"sid", "no"},
    {"audio-display", "no"},  // a cover of a sound file is no video
    {"audio-fallback-to-null", "yes"},
    {"cache", "no"},
    // The library's drawing by the processor ends the program with an assertion if it is to turn a picture.
    // Quarter turns are made in Render.
    {"video-rotate", "no"},
    // Exact in spite of frames that change their order: every frame on the way to a position is decoded, and
    // the way begins early enough.
    {"hr-seek", "yes"},
    {"hr-seek-framedrop", "no"},
    // Only the file itself is opened, never what it names or what lies beside it.
    {"demuxer", "lavf"},
    {"demuxer-lavf-o", "protocol_whitelist=none"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
};

}  // namespace

CMpvCore::CMpvCore() {
    std::setlocale(LC_NUMERIC, "C");  // the library refuses to start otherwise
    m_lastReply = FirstReply;
    m_handle = mpv_create();
    if (m_handle == nullptr) {
        return;
    }
    for (const auto& [name, value] : Options) {
        (void)mpv_set_option_string(m_handle, name, value);  // an older library may lack one
    }
    if (mpv_initialize(m_handle) < 0) {
        return;
    }
    char api[] = MPV_RENDER_API_TYPE_SW;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&m_render, m_handle, parameters) < 0) {
        m_render = nullptr;
        return;
    }
    mpv_observe_property(m_handle, Time, "time-pos", MPV_FORMAT_DOUBLE);
    mpv_observe_property(m_handle, Duration, "duration", MPV_FORMAT_DOUBLE);
    mpv_observe_property(m_handle, AtEnd, "eof-reached", MPV_FORMAT_FLAG);
    mpv_set_wakeup_callback(m_handle, &CMpvCore::Woken, this);
    mpv_render_context_set_update_callback(m_render, &CMpvCore::PictureCame, this);
}

CMpvCore::~CMpvCore() {
    if (m_handle == nullptr) {
        return;
    }
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    if (m_render != nullptr) {
        mpv_render_context_set_update_callback(m_render, nullptr, nullptr);
        mpv_render_context_free(m_render);
    }
    mpv_terminate_destroy(m_handle);
}

// Both are called in threads of the library, which must not be kept.
void CMpvCore::Woken(void* self) {
    CMpvCore& core = *static_cast<CMpvCore*>(self);
    if (!core.m_eventsQueued.exchange(true)) {
        QMetaObject::invokeMethod(
            &core.m_context, [&core] { core.ReadEvents(); }, Qt::QueuedConnection);
    }
}

void CMpvCore::PictureCame(void* self) {
    CMpvCore& core = *static_cast<CMpvCore*>(self);
    if (!core.m_pictureQueued.exchange(true)) {
        QMetaObject::invokeMethod(
            &core.m_context, [&core] { core.TakePicture(); }, Qt::QueuedConnection);
    }
}

void CMpvCore::TakePicture() {
    m_pictureQueued = false;
    if ((mpv_render_context_update(m_render) & MPV_RENDER_UPDATE_FRAME) == 0) {
        return;
    }
    mpv_render_frame_info info{};
    if (mpv_render_context_get_info(m_render, {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info}) >= 0 &&
        (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 &&
        (info.flags & MPV_RENDER_FRAME_INFO_REDRAW) == 0) {
        ++m_newPictures;
    }
    if (OnPicture) {
        OnPicture();
    }
}

void CMpvCore::Load(const std::string& hostPath) {
    if (!IsRunning()) {
        return;
    }
    const std::uint64_t reply = Expect({++m_load, nullptr, nullptr, nullptr});
    m_loadId = 0;
    m_quarterTurns = 0;
    Set("pause", "yes");
    const char* words[] = {"loadfile", hostPath.c_str(), "replace", nullptr};
    mpv_command_async(m_handle, reply, words);
}

void CMpvCore::Unload() {
    ++m_load;
    m_loadId = 0;
    Command({"stop"});
}

std::uint64_t CMpvCore::Expect(Reply reply) {
    m_replies.emplace(++m_lastReply, std::move(reply));
    return m_lastReply;
}

void CMpvCore::Command(const std::vector<std::string>& words, Done done) {
    if (!IsRunning()) {
        return;
    }
    std::vector<const char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(word.c_str());
    }
    arguments.push_back(nullptr);
    const std::uint64_t reply = done ? Expect({m_load, std::move(done), nullptr, nullptr}) : 0;
    mpv_command_async(m_handle, reply, arguments.data());
}

void CMpvCore::Set(const char* property, const std::string& value) {
    if (IsRunning()) {
        const char* text = value.c_str();
        mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_STRING, &text);
    }
}

void CMpvCore::GetNumber(const char* property, NumberReply reply) {
    if (IsRunning()) {
        mpv_get_property_async(m_handle, Expect({m_load, nullptr, std::move(reply), nullptr}), property,
                               MPV_FORMAT_DOUBLE);
    }
}

void CMpvCore::GetText(const char* property, TextReply reply) {
    if (IsRunning()) {
        mpv_get_property_async(m_handle, Expect({m_load, nullptr, nullptr, std::move(reply)}), property,
                               MPV_FORMAT_STRING);
    }
}

bool CMpvCore::Render(QImage& image) {
    if (!IsRunning() || image.isNull()) {
        return false;
    }
    if (m_quarterTurns == 0) {
        return RenderUpright(image);
    }
    QImage lying(m_quarterTurns == 2 ? image.size() : image.size().transposed(), image.format());
    if (!RenderUpright(lying)) {
        return false;
    }
    const QImage turned = lying.transformed(QTransform().rotate(90.0 * m_quarterTurns));
    const auto bytes = static_cast<std::size_t>(std::min(image.bytesPerLine(), turned.bytesPerLine()));
    for (int y = 0; y < std::min(image.height(), turned.height()); ++y) {
        std::memcpy(image.scanLine(y), turned.constScanLine(y), bytes);
    }
    return true;
}

bool CMpvCore::RenderUpright(QImage& image) {
    int size[] = {image.width(), image.height()};
    char format[] = "bgr0";
    std::size_t stride = static_cast<std::size_t>(image.bytesPerLine());
    int wait = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                     {MPV_RENDER_PARAM_SW_FORMAT, format},
                                     {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                     {MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    return mpv_render_context_render(m_render, parameters) >= 0;
}

void CMpvCore::ReadEvents() {
    m_eventsQueued = false;
    for (;;) {
        const mpv_event* event = mpv_wait_event(m_handle, 0);
        if (event->event_id == MPV_EVENT_NONE) {
            return;
        }
        Take(*event);
    }
}

void CMpvCore::Take(const mpv_event& event) {
    const auto tell = [this](const std::function<void()>& handler) {
        if (IsCurrent() && handler) {
            handler();
        }
    };
    switch (event.event_id) {
        case MPV_EVENT_START_FILE:
            m_startedId = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
            break;
        case MPV_EVENT_FILE_LOADED:
            tell(OnFileLoaded);
            break;
        case MPV_EVENT_PLAYBACK_RESTART:
            tell(OnRestart);
            break;
        case MPV_EVENT_END_FILE: {
            // A file that gives way to another ends too; that is no fault, and not of this one.
            const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
            if (end.playlist_entry_id == m_loadId && end.reason != MPV_END_FILE_REASON_STOP) {
                tell(OnLoadFailed);
            }
            break;
        }
        case MPV_EVENT_PROPERTY_CHANGE:
            TakeProperty(event);
            break;
        case MPV_EVENT_COMMAND_REPLY:
        case MPV_EVENT_GET_PROPERTY_REPLY:
            TakeReply(event);
            break;
        default:
            break;
    }
}

void CMpvCore::TakeProperty(const mpv_event& event) {
    const auto& property = *static_cast<const mpv_event_property*>(event.data);
    if (!IsCurrent()) {
        return;
    }
    if (property.format == MPV_FORMAT_DOUBLE) {
        const auto& handler = event.reply_userdata == Time ? OnTime : OnDuration;
        if (handler) {
            handler(*static_cast<const double*>(property.data));
        }
    } else if (property.format == MPV_FORMAT_FLAG && OnEnd) {
        OnEnd(*static_cast<const int*>(property.data) != 0);
    }
}

void CMpvCore::TakeReply(const mpv_event& event) {
    const auto found = m_replies.find(event.reply_userdata);
    if (found == m_replies.end()) {
        return;
    }
    const Reply reply = std::move(found->second);
    m_replies.erase(found);
    if (reply.Load != m_load) {
        return;
    }
    if (reply.Number) {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        reply.Number(event.error >= 0 && property.format == MPV_FORMAT_DOUBLE
                         ? std::optional(*static_cast<const double*>(property.data))
                         : std::nullopt);
    } else if (reply.Text) {
        const auto& property = *static_cast<const mpv_event_property*>(event.data);
        const bool given = event.error >= 0 && property.format == MPV_FORMAT_STRING;
        reply.Text(given ? *static_cast<char* const*>(property.data) : "");
    } else if (reply.Finished) {
        reply.Finished(event.error >= 0);
    } else if (event.error < 0) {
        if (OnLoadFailed) {
            OnLoadFailed();
        }
    } else {
        const mpv_node& result = static_cast<const mpv_event_command*>(event.data)->result;
        for (int i = 0; result.format == MPV_FORMAT_NODE_MAP && i < result.u.list->num; ++i) {
            if (std::string_view(result.u.list->keys[i]) == "playlist_entry_id") {
                m_loadId = result.u.list->values[i].u.int64;
            }
        }
    }
}
