// Which numbers of a workbook are shown as numbers, and not as dates or amounts of money.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/xmlstream.h"

class CNumberStyles : public CXmlEvents {
public:
    void Begin(std::string_view name, const char** attributes) override;
    void End(std::string_view name) override;
    void Text(std::string_view) override {}

    // `style` is the cell's index of a style; empty, and what leads nowhere, is the plain one.
    bool IsPlain(std::string_view style) const;

private:
    std::map<int, std::string> m_formats;  // of the workbook's own, by number
    std::vector<int> m_styles;             // the number of each style's format
    bool m_inCells = false;                // and not among the named styles
};

// Whether a format's code shows a date or a time, or money.
bool ShowsDateOrMoney(std::string_view code);
