#include "store/jet/reader/CStreamWriter.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr std::size_t FlushSize = 1 << 16;

}  // namespace

void CStreamWriter::Begin(JetTag tag) {
    m_frame = m_bytes.size();
    m_open = true;
    Put(std::uint32_t{0});
    Put(tag);
}

void CStreamWriter::End() {
    const auto length = static_cast<std::uint32_t>(m_bytes.size() - m_frame - sizeof(std::uint32_t));
    std::memcpy(m_bytes.data() + m_frame, &length, sizeof length);
    m_open = false;
    if (m_bytes.size() >= FlushSize) {
        Flush();
    }
}

void CStreamWriter::Refuse(std::string_view reason) {
    if (m_open) {
        m_bytes.resize(m_frame);
    }
    Begin(JetTag::Refusal);
    PutText(reason);
    End();
    Flush();
}

void CStreamWriter::PutText(std::string_view text) {
    Put(static_cast<std::uint32_t>(text.size()));
    m_bytes.append(text);
}

void CStreamWriter::Integer(std::int64_t value) {
    Put(JetForm::Integer);
    Put(value);
}

void CStreamWriter::Real(double value) {
    Put(JetForm::Real);
    Put(value);
}

void CStreamWriter::Text(std::string_view text) {
    Put(JetForm::Text);
    PutText(text);
}

void CStreamWriter::Bytes(std::string_view bytes) {
    Put(JetForm::Bytes);
    PutText(bytes);
}

void CStreamWriter::Flush() {
    std::string_view rest = m_bytes;
    while (!rest.empty()) {
        const ssize_t written = write(m_descriptor, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            _exit(JetExitNoOutput);
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    m_bytes.clear();
}
