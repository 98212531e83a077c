#include "shell/textcodec.h"

#include <iconv.h>
#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace {

constexpr std::string_view EuroUtf8 = "\xE2\x82\xAC";
constexpr char EuroGbk = '\x80';  // the system's iconv leaves out this one character of code page 936

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

class CConverter {
public:
    CConverter(const char* to, const char* from) : m_handle(iconv_open(to, from)) {
        if (m_handle == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error("the system's iconv lacks code page 936");
        }
    }
    ~CConverter() { iconv_close(m_handle); }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;

    // Converts as much as can be; returns the number of bytes taken.
    std::size_t Run(std::string_view in, std::string& out) {
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(in.data());  // iconv's signature; it only reads
        std::size_t left = in.size();
        char buffer[4096];
        for (;;) {
            char* to = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t result = iconv(m_handle, &from, &left, &to, &room);
            const int reason = errno;
            out.append(buffer, sizeof buffer - room);
            if (result != static_cast<std::size_t>(-1) || reason != E2BIG) {
                return in.size() - left;
            }
        }
    }

private:
    iconv_t m_handle;
};

bool IsGbkLead(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x81 && byte <= 0xFE;
}

char32_t DecodeUtf8(std::string_view text, std::size_t length) {
    const auto byte = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
    };
    switch (length) {
        case 1:
            return byte(0);
        case 2:
            return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
        case 3:
            return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
        default:
            return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
    }
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// The case tables of the C library, independent of the locale that the process runs in.
char32_t LowerChar(char32_t c) {
    static const locale_t tables = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (c < 0x80 || tables == nullptr) {
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    }
    return static_cast<char32_t>(towlower_l(static_cast<wint_t>(c), tables));
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

std::string GbkFromUtf8(std::string_view utf8) {
    if (IsAscii(utf8)) {
        return std::string(utf8);
    }
    thread_local CConverter converter("GBK", "UTF-8");
    std::string out;
    for (std::size_t at = 0; at < utf8.size();) {
        at += converter.Run(utf8.substr(at), out);
        if (at < utf8.size()) {
            const std::string_view rest = utf8.substr(at);
            if (rest.starts_with(EuroUtf8)) {
                out += EuroGbk;
            } else {
                out += '?';
            }
            at += std::max<std::size_t>(1, Utf8CharLength(rest));
        }
    }
    return out;
}

std::string Utf8FromGbk(std::string_view gbk) {
    if (IsAscii(gbk)) {
        return std::string(gbk);
    }
    thread_local CConverter converter("UTF-8", "GBK");
    std::string out;
    for (std::size_t at = 0; at < gbk.size();) {
        at += converter.Run(gbk.substr(at), out);
        if (at >= gbk.size()) {
            break;
        }
        if (gbk[at] == EuroGbk) {
            out += EuroUtf8;
            ++at;
        } else if (IsGbkLead(gbk[at]) && at + 1 == gbk.size()) {
            ++at;
        } else {
            out += '?';
            // A lead byte takes its partner along only where that isn't a character of its own.
            at += IsGbkLead(gbk[at]) && static_cast<unsigned char>(gbk[at + 1]) >= 0x80 ? 2U : 1U;
        }
    }
    return out;
}

std::string ThroughGbk(std::string_view utf8) {
    return IsAscii(utf8) ? std::string(utf8) : Utf8FromGbk(GbkFromUtf8(utf8));
}

std::size_t Utf8CharLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto tail = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0) == 0x80; };
    if (text.empty()) {
        return 0;
    }
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return tail(1) ? 2 : 0;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (!tail(1) || !tail(2) || (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F)) {
            return 0;
        }
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (!tail(1) || !tail(2) || !tail(3) || (lead == 0xF0 && byte(1) < 0x90) ||
            (lead == 0xF4 && byte(1) > 0x8F)) {
            return 0;
        }
        return 4;
    }
    return 0;
}

bool IsValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = Utf8CharLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::size_t GbkLength(std::string_view utf8) {
    return GbkFromUtf8(utf8).size();
}

std::string GbkPrefix(std::string_view utf8, std::size_t bytes) {
    const std::string gbk = GbkFromUtf8(utf8);
    return gbk.size() <= bytes ? std::string(utf8) : Utf8FromGbk(std::string_view(gbk).substr(0, bytes));
}

std::string GbkSuffix(std::string_view utf8, std::size_t start) {
    const std::string gbk = GbkFromUtf8(utf8);
    return start >= gbk.size() ? std::string() : Utf8FromGbk(std::string_view(gbk).substr(start));
}

std::string LowerCase(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::size_t length = Utf8CharLength(utf8);
        if (length == 0) {
            out += utf8.front();
        } else {
            AppendUtf8(out, LowerChar(DecodeUtf8(utf8, length)));
        }
        utf8.remove_prefix(std::max<std::size_t>(1, length));
    }
    return out;
}

int CompareNoCase(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    for (; i < a.size() && i < b.size(); ++i) {
        const char left = LowerAscii(a[i]);
        const char right = LowerAscii(b[i]);
        if ((static_cast<unsigned char>(left) | static_cast<unsigned char>(right)) >= 0x80) {
            return LowerCase(a).compare(LowerCase(b));
        }
        if (left != right) {
            return static_cast<unsigned char>(left) < static_cast<unsigned char>(right) ? -1 : 1;
        }
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return CompareNoCase(a, b) == 0;
}

int CompareGbk(std::string_view a, std::string_view b) {
    return GbkFromUtf8(a).compare(GbkFromUtf8(b));
}

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}
