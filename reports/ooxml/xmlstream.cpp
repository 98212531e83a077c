#include "reports/ooxml/xmlstream.h"

#include <expat.h>

#include <exception>
#include <memory>

#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/CZipReader.h"

namespace {

// The parser begins a tag anew with each piece that it gets, so a tag of hundreds of megabytes would keep it
// busy for good.
constexpr XML_Index LongestToken = 8 << 20;

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser>;

// Exceptions mustn't pass through the parser, which is C.
struct State {
    CXmlEvents& Events;
    XML_Parser Parser;
    std::exception_ptr Thrown;
};

template <class Call>
void Guard(void* data, Call call) {
    State& state = *static_cast<State*>(data);
    if (state.Thrown) {
        return;
    }
    try {
        call(state.Events);
    } catch (...) {
        state.Thrown = std::current_exception();
        XML_StopParser(state.Parser, XML_FALSE);
    }
}

std::string_view LocalName(const char* name) {
    const std::string_view whole = name;
    const std::size_t colon = whole.rfind(':');
    return colon == whole.npos ? whole : whole.substr(colon + 1);
}

void OnBegin(void* data, const XML_Char* name, const XML_Char** attributes) {
    Guard(data, [&](CXmlEvents& events) { events.Begin(LocalName(name), attributes); });
}

void OnEnd(void* data, const XML_Char* name) {
    Guard(data, [&](CXmlEvents& events) { events.End(LocalName(name)); });
}

void OnText(void* data, const XML_Char* text, int length) {
    Guard(data, [&](CXmlEvents& events) { events.Text({text, static_cast<std::size_t>(length)}); });
}

void OnDocumentType(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    Guard(data, [](CXmlEvents&) { throw COoxmlError(OoxmlFault::DamagedPart, {"DOCTYPE"}); });
}

}  // namespace

std::string_view AttributeOf(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
        if (name == attributes[0]) {
            return attributes[1];
        }
    }
    return {};
}

void StreamXml(const CZipReader& archive, const std::string& part, std::uint64_t most, CXmlEvents& events) {
    const Parser parser(XML_ParserCreate(nullptr));
    if (!parser) {
        throw std::bad_alloc();
    }
    State state{events, parser.get(), nullptr};
    XML_SetUserData(parser.get(), &state);
    XML_SetElementHandler(parser.get(), OnBegin, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnText);
    XML_SetStartDoctypeDeclHandler(parser.get(), OnDocumentType);
    XML_Index fed = 0;
    const auto feed = [&](std::string_view piece, bool last) {
        const auto length = static_cast<int>(piece.size());
        const bool parsed = XML_Parse(parser.get(), piece.data(), length, last ? 1 : 0) == XML_STATUS_OK;
        if (state.Thrown) {
            std::rethrow_exception(state.Thrown);
        }
        fed += length;
        if (!parsed || fed - XML_GetCurrentByteIndex(parser.get()) > LongestToken) {
            throw COoxmlError(OoxmlFault::DamagedPart, {part});
        }
    };
    archive.Read(part, most, [&](std::string_view piece) { feed(piece, false); });
    feed({}, true);
}
