#include "reports/ooxml/pictures.h"

#include <zlib.h>

#include <array>
#include <cstdint>

namespace {

constexpr double PointsPerInch = 72;
constexpr double InchesPerMetre = 39.3700787;
constexpr double UsualResolution = 96;
constexpr std::uint32_t LongestSide = 65535;
// Unpacked. No camera's picture comes near, and nobody waits for a file that pretends to hold more.
constexpr std::uint64_t MostPixelBytes = 1U << 30U;

// Reads beyond the end give 0; whoever cares about the end asks for it.
class CByteReader {
public:
    explicit CByteReader(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Size() const { return m_bytes.size(); }
    std::uint32_t Byte(std::size_t at) const {
        return at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[at]) : 0;
    }
    std::uint32_t Big16(std::size_t at) const { return Byte(at) << 8U | Byte(at + 1); }
    std::uint32_t Big32(std::size_t at) const { return Big16(at) << 16U | Big16(at + 2); }
    std::uint32_t Little16(std::size_t at) const { return Byte(at + 1) << 8U | Byte(at); }
    std::uint32_t Little32(std::size_t at) const { return Little16(at + 2) << 16U | Little16(at); }
    std::string_view Text(std::size_t at, std::size_t length) const {
        return at < m_bytes.size() ? m_bytes.substr(at, length) : std::string_view();
    }
    // Where the text stands last; 0 if it doesn't stand at `from` or behind it.
    std::size_t LastOf(std::string_view text, std::size_t from) const {
        const std::size_t at = m_bytes.rfind(text);
        return at == std::string_view::npos || at < from ? 0 : at;
    }

private:
    std::string_view m_bytes;
};

// Resolutions in pixels an inch.
std::optional<PictureInfo> Info(const char* extension, const char* mediaType, std::uint32_t width,
                                std::uint32_t height, double resolutionX, double resolutionY) {
    if (width == 0 || height == 0 || width > LongestSide || height > LongestSide) {
        return std::nullopt;
    }
    // Odd resolutions come from software that wrote a 1 or the number of dots of a printer's head.
    const auto usual = [](double value) { return value >= 30 && value <= 1200 ? value : UsualResolution; };
    PictureInfo info{extension, mediaType, static_cast<int>(width), static_cast<int>(height), 0, 0};
    info.Width = width * PointsPerInch / usual(resolutionX);
    info.Height = height * PointsPerInch / usual(resolutionY);
    return info;
}

bool IsFrameHeader(std::uint32_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

std::optional<PictureInfo> ReadJpeg(const CByteReader& file) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    double resolutionX = 0;
    double resolutionY = 0;
    std::size_t at = 2;
    while (at + 4 <= file.Size()) {
        if (file.Byte(at) != 0xFF) {
            return std::nullopt;
        }
        const std::uint32_t marker = file.Byte(at + 1);
        if (marker == 0xFF) {  // filling
            ++at;
            continue;
        }
        const std::size_t length = file.Big16(at + 2);
        if (length < 2 || at + 2 + length > file.Size()) {
            return std::nullopt;
        }
        if (marker == 0xDA) {
            // The scan follows, and behind it the mark of the picture's end, without which a part is missing.
            return file.LastOf("\xFF\xD9", at + 2 + length + 1) != 0
                       ? Info("jpeg", "image/jpeg", width, height, resolutionX, resolutionY)
                       : std::nullopt;
        }
        if (IsFrameHeader(marker)) {
            height = file.Big16(at + 5);
            width = file.Big16(at + 7);
        } else if (marker == 0xE0 && file.Text(at + 4, 4) == "JFIF" && length >= 16) {
            const double unit = file.Byte(at + 11) == 2 ? 2.54 : file.Byte(at + 11) == 1 ? 1 : 0;
            resolutionX = file.Big16(at + 12) * unit;
            resolutionY = file.Big16(at + 14) * unit;
        }
        at += 2 + length;
    }
    return std::nullopt;
}

// Bytes of the unpacked rows of a PNG, whose header has been found; 0 for what the format doesn't know.
std::uint64_t PixelBytes(const CByteReader& file) {
    const std::uint64_t width = file.Big32(16);
    const std::uint64_t height = file.Big32(20);
    const std::uint32_t depth = file.Byte(24);
    const std::uint32_t type = file.Byte(25);
    const std::uint32_t interlace = file.Byte(28);
    const bool small = depth == 1 || depth == 2 || depth == 4;
    const bool known = (type == 0 && (small || depth == 8 || depth == 16)) ||
                       (type == 3 && (small || depth == 8)) ||
                       ((type == 2 || type == 4 || type == 6) && (depth == 8 || depth == 16));
    if (!known || file.Byte(26) != 0 || file.Byte(27) != 0 || interlace > 1 || width > LongestSide ||
        height > LongestSide) {
        return 0;
    }
    const std::uint64_t channels = type == 2 ? 3 : type == 4 ? 2 : type == 6 ? 4 : 1;
    // Each row begins with a byte that tells its filter.
    const auto bytes = [&](std::uint64_t columns, std::uint64_t rows) {
        return columns == 0 ? 0 : rows * (1 + (columns * channels * depth + 7) / 8);
    };
    if (interlace == 0) {
        return bytes(width, height);
    }
    struct Pass {
        std::uint64_t X, Y, StepX, StepY;
    };
    constexpr Pass Passes[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                               {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    std::uint64_t sum = 0;
    for (const Pass& pass : Passes) {
        sum += bytes((width + pass.StepX - 1 - pass.X) / pass.StepX,
                     (height + pass.StepY - 1 - pass.Y) / pass.StepY);
    }
    return sum;
}

// Unpacks the pieces of a PNG's data only to see that they are whole.
class CPixelCheck {
public:
    explicit CPixelCheck(std::uint64_t expected) : m_left(expected) {
        m_failed = expected == 0 || expected > MostPixelBytes || inflateInit(&m_stream) != Z_OK;
    }
    ~CPixelCheck() { inflateEnd(&m_stream); }
    CPixelCheck(const CPixelCheck&) = delete;
    CPixelCheck& operator=(const CPixelCheck&) = delete;

    void Add(std::string_view piece) {
        // The signature of the library; it only reads.
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
        m_stream.avail_in = static_cast<uInt>(piece.size());
        while (!m_failed && !m_ended) {
            m_stream.next_out = m_unpacked.data();
            m_stream.avail_out = static_cast<uInt>(m_unpacked.size());
            const int result = inflate(&m_stream, Z_NO_FLUSH);
            const std::uint64_t got = m_unpacked.size() - m_stream.avail_out;
            m_ended = result == Z_STREAM_END;
            m_failed = got > m_left || (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR);
            m_left -= m_failed ? 0 : got;
            if (m_stream.avail_out != 0) {
                break;  // all that is there is taken
            }
        }
    }
    bool IsWhole() const { return !m_failed && m_ended && m_left == 0; }

private:
    z_stream m_stream{};
    std::array<Bytef, 32768> m_unpacked;
    std::uint64_t m_left;
    bool m_failed = false;
    bool m_ended = false;
};

std::optional<PictureInfo> ReadPng(const CByteReader& file) {
    double resolutionX = 0;
    double resolutionY = 0;
    if (file.Big32(8) != 13 || file.Text(12, 4) != "IHDR") {
        return std::nullopt;
    }
    CPixelCheck pixels(PixelBytes(file));
    for (std::size_t at = 8; at + 12 <= file.Size();) {
        const std::size_t length = file.Big32(at);
        const std::string_view type = file.Text(at + 4, 4);
        if (length > file.Size() - at - 12) {
            return std::nullopt;
        }
        const std::string_view checked = file.Text(at + 4, length + 4);
        if (crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size())) !=
            file.Big32(at + 8 + length)) {
            return std::nullopt;
        }
        if (type == "IEND") {
            return pixels.IsWhole()
                       ? Info("png", "image/png", file.Big32(16), file.Big32(20), resolutionX, resolutionY)
                       : std::nullopt;
        }
        if (type == "IDAT") {
            pixels.Add(file.Text(at + 8, length));
        }
        if (type == "pHYs" && length >= 9 && file.Byte(at + 16) == 1) {
            resolutionX = file.Big32(at + 8) / InchesPerMetre;
            resolutionY = file.Big32(at + 12) / InchesPerMetre;
        }
        at += 12 + length;
    }
    return std::nullopt;
}

std::optional<PictureInfo> ReadBmp(const CByteReader& file) {
    const std::uint32_t header = file.Little32(14);
    const std::uint64_t pixels = file.Little32(10);
    if (header == 12) {
        return Info("bmp", "image/bmp", file.Little16(18), file.Little16(20), 0, 0);
    }
    const std::uint64_t width = file.Little32(18);
    // Negative heights mean that the first row is the top one.
    const std::uint32_t told = file.Little32(22);
    const std::uint64_t height = (told & 0x80000000U) != 0 ? 0U - told : told;
    const std::uint64_t bits = file.Little16(28);
    const std::uint32_t compression = file.Little32(30);
    if (header < 40 || header > 124 || width > LongestSide || height > LongestSide || bits == 0 ||
        bits > 32) {
        return std::nullopt;
    }
    const bool plain = compression == 0 || compression == 3;
    const std::uint64_t needed = plain ? (width * bits + 31) / 32 * 4 * height : 1;
    if (pixels < 14 + header || pixels + needed > file.Size()) {
        return std::nullopt;
    }
    return Info("bmp", "image/bmp", static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                file.Little32(38) / InchesPerMetre, file.Little32(42) / InchesPerMetre);
}

}  // namespace

std::optional<PictureInfo> ReadPictureInfo(std::string_view bytes) {
    const CByteReader file(bytes);
    if (bytes.starts_with("\xFF\xD8\xFF")) {
        return ReadJpeg(file);
    }
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) {
        return ReadPng(file);
    }
    return bytes.starts_with("BM") ? ReadBmp(file) : std::nullopt;
}
