// The reader process's standard output: frames of jetstream.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "store/jet/jetstream.h"

class CStreamWriter {
public:
    explicit CStreamWriter(int descriptor) : m_descriptor(descriptor) {}

    void Begin(JetTag tag);
    template <class Number>
    void Put(Number number) requires std::is_arithmetic_v<Number> || std::is_enum_v<Number> {
        m_bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    void PutText(std::string_view text);
    void End();
    // Drops the frame that is half made, tells why nothing more will come, and flushes.
    void Refuse(std::string_view reason);

    void Null() { Put(JetForm::Null); }
    void Integer(std::int64_t value);
    void Real(double value);
    void Text(std::string_view text);
    void Bytes(std::string_view bytes);

    // Ends the process if nobody reads any more.
    void Flush();

private:
    int m_descriptor;
    std::string m_bytes;
    std::size_t m_frame = 0;  // where it begins
    bool m_open = false;
};
