#include "reports/ooxml/chart.h"

#include <algorithm>

#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/xmltext.h"
#include "reports/ooxml/ziparchive.h"
#include "shell/numbers.h"

namespace {

constexpr std::size_t MostColumns = 26;
constexpr const char* Head = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
                             "\n";
constexpr const char* Accent = "2F6DA8";
// Neighbours differ in hue and in lightness, so that slices stay apart in print without colours.
constexpr const char* Slices[] = {"2F6DA8", "E39B3B", "4E9A6B", "C2514B",
                                  "7E68A6", "56B0B8", "D9C24A", "8A6A4F"};

std::string Column(std::size_t index) {
    return std::string(1, static_cast<char>('A' + index));
}

std::string Range(const ChartSpec& spec, int row) {
    const std::string number = FormatInt(row);
    return "Sheet1!$A$" + number + ":$" + Column(spec.Values.size() - 1) + "$" + number;
}

std::string Points(const std::vector<std::string>& texts) {
    std::string xml = "<c:ptCount val=\"" + FormatInt(static_cast<std::int64_t>(texts.size())) + "\"/>";
    for (std::size_t i = 0; i < texts.size(); ++i) {
        xml += "<c:pt idx=\"" + FormatInt(static_cast<std::int64_t>(i)) + "\"><c:v>" + Escape(texts[i]) +
               "</c:v></c:pt>";
    }
    return xml;
}

std::vector<std::string> ValueTexts(const ChartSpec& spec) {
    std::vector<std::string> texts;
    for (const long long value : spec.Values) {
        texts.push_back(FormatInt(value));
    }
    return texts;
}

std::string Series(const ChartSpec& spec, const std::string& form, const std::string& labels) {
    return R"(<c:ser><c:idx val="0"/><c:order val="0"/>)" + form + labels + "<c:cat><c:strRef><c:f>" +
           Range(spec, spec.FirstRow) + "</c:f><c:strCache>" + Points(spec.Names) +
           "</c:strCache></c:strRef></c:cat><c:val><c:numRef><c:f>" + Range(spec, spec.FirstRow + 1) +
           "</c:f><c:numCache><c:formatCode>General</c:formatCode>" + Points(ValueTexts(spec)) +
           "</c:numCache></c:numRef></c:val></c:ser>";
}

std::string Fill(const std::string& colour) {
    return R"(<c:spPr><a:solidFill><a:srgbClr val=")" + colour + R"("/></a:solidFill></c:spPr>)";
}

std::string Line(const std::string& colour) {
    return R"(<c:spPr><a:ln w="6350"><a:solidFill><a:srgbClr val=")" + colour +
           R"("/></a:solidFill></a:ln></c:spPr>)";
}

std::string Labels(bool value, bool name, bool share) {
    const auto flag = [](const char* element, bool on) {
        return std::string("<c:") + element + " val=\"" + (on ? "1" : "0") + "\"/>";
    };
    return "<c:dLbls>" + flag("showLegendKey", false) + flag("showVal", value) + flag("showCatName", name) +
           flag("showSerName", false) + flag("showPercent", share) + flag("showBubbleSize", false) +
           (share ? flag("showLeaderLines", true) : "") + "</c:dLbls>";
}

std::string ColumnsPlot(const ChartSpec& spec) {
    const std::string series =
        Series(spec, Fill(Accent) + R"(<c:invertIfNegative val="0"/>)", Labels(true, false, false));
    // Counts are whole numbers. Small axes are divided into halves by themselves, large ones never.
    constexpr long long LargestOfSmallAxes = 10;
    const bool small = *std::max_element(spec.Values.begin(), spec.Values.end()) <= LargestOfSmallAxes;
    return R"(<c:view3D><c:rotX val="15"/><c:rotY val="20"/><c:rAngAx val="1"/></c:view3D>)"
           R"(<c:plotArea><c:layout/><c:bar3DChart><c:barDir val="col"/><c:grouping val="clustered"/>)"
           R"(<c:varyColors val="0"/>)" +
           series +
           R"(<c:gapWidth val="120"/><c:shape val="box"/><c:axId val="100001"/><c:axId val="100002"/>)"
           R"(<c:axId val="0"/></c:bar3DChart><c:catAx><c:axId val="100001"/><c:scaling>)"
           R"(<c:orientation val="minMax"/></c:scaling><c:delete val="0"/><c:axPos val="b"/>)"
           R"(<c:numFmt formatCode="General" sourceLinked="1"/><c:majorTickMark val="none"/>)"
           R"(<c:minorTickMark val="none"/><c:tickLblPos val="nextTo"/>)" +
           Line("8C96A0") +
           R"(<c:crossAx val="100002"/><c:crosses val="autoZero"/><c:auto val="1"/><c:lblAlgn val="ctr"/>)"
           R"(<c:lblOffset val="100"/><c:noMultiLvlLbl val="0"/></c:catAx><c:valAx><c:axId val="100002"/>)"
           R"(<c:scaling><c:orientation val="minMax"/><c:min val="0"/></c:scaling><c:delete val="0"/>)"
           R"(<c:axPos val="l"/><c:majorGridlines>)" +
           Line("D5DBE1") +
           R"(</c:majorGridlines><c:numFmt formatCode="0" sourceLinked="0"/><c:majorTickMark val="none"/>)"
           R"(<c:minorTickMark val="none"/><c:tickLblPos val="nextTo"/><c:crossAx val="100001"/>)"
           R"(<c:crosses val="autoZero"/><c:crossBetween val="between"/>)" +
           (small ? R"(<c:majorUnit val="1"/>)" : "") + "</c:valAx></c:plotArea>";
}

std::string PiePlot(const ChartSpec& spec) {
    std::string form;
    for (std::size_t i = 0; i < spec.Values.size(); ++i) {
        form += "<c:dPt><c:idx val=\"" + FormatInt(static_cast<std::int64_t>(i)) +
                R"("/><c:bubble3D val="0"/>)" + Fill(Slices[i % std::size(Slices)]) + "</c:dPt>";
    }
    return R"(<c:view3D><c:rotX val="70"/><c:rotY val="0"/><c:rAngAx val="0"/></c:view3D>)"
           R"(<c:plotArea><c:layout/><c:pie3DChart><c:varyColors val="1"/>)" +
           Series(spec, form, Labels(false, true, true)) +
           R"(</c:pie3DChart></c:plotArea><c:legend><c:legendPos val="b"/><c:overlay val="0"/></c:legend>)";
}

std::string SheetRow(int row, const std::vector<std::string>& texts, bool numbers) {
    const std::string number = FormatInt(row);
    std::string xml = "<row r=\"" + number + "\">";
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string cell = "<c r=\"" + Column(i) + number + "\"";
        xml += numbers ? cell + "><v>" + texts[i] + "</v></c>"
                       : cell + R"( t="inlineStr"><is><t xml:space="preserve">)" + Escape(texts[i]) +
                             "</t></is></c>";
    }
    return xml + "</row>";
}

}  // namespace

void CheckChart(const ChartSpec& spec) {
    if (spec.Values.empty() || spec.Values.size() > MostColumns || spec.Names.size() != spec.Values.size()) {
        throw COoxmlError(OoxmlFault::NoChart, {FormatInt(static_cast<std::int64_t>(spec.Values.size()))});
    }
}

std::string ChartXml(const ChartSpec& spec, const std::string& workbookRelation) {
    CheckChart(spec);
    return Head +
           std::string(R"(<c:chartSpace xmlns:c="http://schemas.openxmlformats.org/drawingml/2006/chart" )"
                       R"(xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" )"
                       R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
                       R"(<c:roundedCorners val="0"/><c:chart><c:autoTitleDeleted val="1"/>)") +
           (spec.Kind == ChartKind::Columns ? ColumnsPlot(spec) : PiePlot(spec)) +
           R"(<c:plotVisOnly val="1"/><c:dispBlanksAs val="gap"/></c:chart>)"
           R"(<c:spPr><a:noFill/><a:ln><a:noFill/></a:ln></c:spPr><c:txPr><a:bodyPr/><a:p><a:pPr>)"
           R"(<a:defRPr sz="900"/></a:pPr><a:endParaRPr lang="zh-CN"/></a:p></c:txPr>)"
           R"(<c:externalData r:id=")" +
           workbookRelation + R"("><c:autoUpdate val="0"/></c:externalData></c:chartSpace>)";
}

std::string ChartWorkbook(const ChartSpec& spec) {
    CheckChart(spec);
    const std::string head = Head;
    const std::string types = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
    const std::string relations = "http://schemas.openxmlformats.org/package/2006/relationships";
    const std::string kinds = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
    const std::string sheets = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
    const auto relation = [&](const std::string& kind, const std::string& target) {
        return head + "<Relationships xmlns=\"" + relations + "\"><Relationship Id=\"rId1\" Type=\"" + kinds +
               "/" + kind + "\" Target=\"" + target + "\"/></Relationships>";
    };
    return WriteZip(
        {{"[Content_Types].xml",
          head +
              "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
              "<Default Extension=\"rels\" "
              "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
              "<Override PartName=\"/xl/workbook.xml\" ContentType=\"" +
              types + "sheet.main+xml\"/><Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"" +
              types + "worksheet+xml\"/></Types>",
          {},
          6},
         {"_rels/.rels", relation("officeDocument", "xl/workbook.xml"), {}, 6},
         {"xl/workbook.xml",
          head + "<workbook xmlns=\"" + sheets + "\" xmlns:r=\"" + kinds +
              R"("><sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/></sheets></workbook>)",
          {},
          6},
         {"xl/_rels/workbook.xml.rels", relation("worksheet", "worksheets/sheet1.xml"), {}, 6},
         {"xl/worksheets/sheet1.xml",
          head + "<worksheet xmlns=\"" + sheets + "\"><sheetData>" +
              SheetRow(spec.FirstRow, spec.Names, false) +
              SheetRow(spec.FirstRow + 1, ValueTexts(spec), true) + "</sheetData></worksheet>",
          {},
          6}});
}
