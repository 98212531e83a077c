// Before XML goes to a parser: what would keep it busy for good.
#pragma once

#include <string_view>

// Parsers look each attribute up among those before it, so an element with 100,000 of them takes half a
// minute. Nothing that we read has more than a few dozen.
bool HasTooManyAttributes(std::string_view xml);

// Parsers that call themselves for each level end with the stack at some ten thousand. Also true for an
// instruction inside an element, behind which levels could hide.
bool IsNestedTooDeep(std::string_view xml);
