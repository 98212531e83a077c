#include "store/jet/CJetUnpacker.h"

#include "shell/textcodec.h"

namespace {

[[noreturn]] void Refuse() {
    throw CJetError(CJetError::Why::Content, "the reader sent what can't be");
}

}  // namespace

std::string_view CJetUnpacker::Take(std::size_t size) {
    if (size > m_bytes.size()) {
        Refuse();
    }
    const std::string_view taken = m_bytes.substr(0, size);
    m_bytes.remove_prefix(size);
    return taken;
}

std::string_view CJetUnpacker::TakeText() {
    const std::string_view text = TakeBytes();
    if (!IsValidUtf8(text)) {
        Refuse();
    }
    return text;
}

std::string CJetUnpacker::TakeName() {
    const std::string_view name = TakeText();
    if (name.empty() || name.find('\0') != std::string_view::npos) {
        Refuse();
    }
    return std::string(name);
}

JetTable CJetUnpacker::TakeTable() {
    JetTable table;
    table.Name = TakeName();
    table.Rows = TakeNumber<std::int64_t>();
    table.LastNumber = TakeNumber<std::int64_t>();
    if (table.Rows < 0) {
        Refuse();
    }
    const auto columns = TakeNumber<std::uint16_t>();
    for (std::uint16_t i = 0; i < columns; ++i) {
        JetColumn column;
        column.Name = TakeName();
        const auto kind = TakeNumber<std::uint8_t>();
        column.Automatic = TakeNumber<std::uint8_t>() != 0;
        if (kind >= static_cast<std::uint8_t>(JetKind::Count)) {
            Refuse();
        }
        column.Kind = static_cast<JetKind>(kind);
        table.Columns.push_back(std::move(column));
    }
    if (table.Columns.empty()) {
        Refuse();
    }
    return table;
}

JetValue CJetUnpacker::TakeValue() {
    const auto form = TakeNumber<std::uint8_t>();
    if (form >= static_cast<std::uint8_t>(JetForm::Count)) {
        Refuse();
    }
    JetValue value;
    value.Form = static_cast<JetForm>(form);
    switch (value.Form) {
        case JetForm::Integer:
            value.Integer = TakeNumber<std::int64_t>();
            break;
        case JetForm::Real:
            value.Real = TakeNumber<double>();
            break;
        case JetForm::Text:
            value.Text = TakeText();
            break;
        case JetForm::Bytes:
            value.Text = TakeBytes();
            break;
        default:
            break;
    }
    return value;
}

void CJetUnpacker::ExpectEnd() const {
    if (!IsEnd()) {
        Refuse();
    }
}
