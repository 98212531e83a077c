#include "geo/dialogs/CDlgMap.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <algorithm>

#include "controls/CWebBrowser2.h"
#include "geo/dialogs/CDlgSelTesting.h"
#include "geo/dialogs/mapfiles.h"
#include "geo/mapview/CTileFile.h"
#include "geo/mapview/mapdetails.h"
#include "geo/mapview/mapsettings.h"
#include "geo/mapview/maptexts.h"
#include "lists/CDefectList.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

constexpr int IdDefects = 1014;
constexpr int IdBrowser = 1016;
constexpr int IdPaper = 5010;
constexpr int IdPdf = 5011;
constexpr int IdPng = 5012;
constexpr int IdPaperLabel = 5013;

constexpr int MessageSavePdf = 3433;
constexpr int MessageSavePng = 3434;
constexpr int MessageNotSaved = 3435;
constexpr int MessageNoBrowser = 3436;
constexpr int MessagePaper = 3437;

constexpr int TimerSelection = 1;
constexpr int TimerPoll = 3;
constexpr int AfterSelection = 50;  // milliseconds
constexpr int FirstPoll = 2000;
constexpr int EachPoll = 50;

constexpr int ListWidth = 330;  // pixels
constexpr int WidestList = 430;
constexpr int MapWidth = 760;
constexpr int MapHeight = 560;

constexpr int PictureDots = 300;  // an inch
constexpr double PageMargin = 8;  // millimetres
constexpr double PixelsPerMillimetre = 96 / 25.4;
constexpr int PrintStep = 50;  // milliseconds
constexpr int PrintTries = 240;

// Reads what happened and takes it back in one script, so that no click in between is lost. "-3" where the
// page has no such variable.
const char* const ReadEvents =
    "(function(){var c=-3,o=-1;try{if(typeof nClickEvent!=='undefined'){c=nClickEvent|0;}}catch(e){}"
    "try{if(typeof nOpenEvent!=='undefined'){o=nOpenEvent|0;nOpenEvent=-1;}}catch(e){}"
    "try{ClearClickEvent();}catch(e){}return c+' '+o;})()";
constexpr int NoVariable = -3;

}  // namespace

CDlgMap::CDlgMap(CDbRec& database, std::int32_t section, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_section(section),
      m_list(AddControl(IdDefects, new CDefectList(this))),
      m_frame(AddControl(IdBrowser, new QWidget(this))),
      m_paper(AddControl(IdPaper, new QComboBox(this))) {
    setWindowTitle("地图");
    m_list->setFixedWidth(ListWidth);
    m_list->OnItemChanged = [this] { SetTimer(TimerSelection, AfterSelection); };
    m_list->OnDoubleClick = [this](int row) { OpenRow(row); };
    m_frame->setMinimumSize(MapWidth, MapHeight);
    (new QVBoxLayout(m_frame))->setContentsMargins(0, 0, 0, 0);
    m_paper->addItems({"A4", "A3"});

    auto* row = new QHBoxLayout;
    row->addStretch();
    auto* label = AddControl(IdPaperLabel, new QLabel("纸张", this));
    label->setBuddy(m_paper);
    row->addWidget(label);
    row->addWidget(m_paper);
    for (const auto& [id, text] : {std::pair(IdPdf, "保存为PDF"), std::pair(IdPng, "保存为PNG")}) {
        auto* button = AddControl(id, new QPushButton(text, this));
        button->setAutoDefault(false);
        row->addWidget(button);
        OnCommand(id, [this, id = id] { Save(id == IdPng); });
    }
    auto* right = new QVBoxLayout;
    right->addWidget(m_frame, 1);
    right->addLayout(row);
    auto* whole = new QHBoxLayout(this);
    whole->addWidget(m_list);
    whole->addLayout(right, 1);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* enter = new QShortcut(key, m_list);
        enter->setContext(Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, this, [this] { OpenRow(m_list->SelectedRow()); });
    }
}

CDlgMap::~CDlgMap() {
    // It asks this window for what it serves.
    if (m_browser != nullptr) {
        delete m_browser->Widget();
    }
}

bool CDlgMap::ChooseSections() {
    CDlgSelTesting chooser(m_database, parentWidget());
    if (chooser.DoModal() != IdOk) {
        return false;
    }
    const CWaitCursor wait;
    if (!ReadMapContent(m_database, m_section, chooser.ChosenSections, m_content)) {
        return false;
    }
    m_list->Show(m_database, m_content.Records);
    return true;
}

void CDlgMap::OnInitDialog() {
    SetCaption(500);
    SetCaptions({{IdPdf, MessageSavePdf}, {IdPng, MessageSavePng}, {IdPaperLabel, MessagePaper}});
    m_list->CreateColumns(false, false);
    if (!ChooseSections()) {
        EndDialog(IdCancel);
        return;
    }
    m_list->setFixedWidth(std::clamp(m_list->FullWidth(), ListWidth, WidestList));
    for (const _REC_DATA& record : m_content.Records) {
        if (!record.GetPicture1().empty()) {
            m_pictures.insert(record.GetPicture1());
        }
    }
    m_tiles = std::make_unique<MapTiles>(ReadMapTiles());
    if (!m_tiles->File.empty()) {
        m_tileFile = std::make_unique<CTileFile>(m_tiles->File);
        if (m_tileFile->DeepestZoom() < 0) {
            m_tiles->File.clear();  // without tiles there is the grid
            m_tiles->Address.clear();
        } else {
            m_tiles->DeepestZoom = m_tileFile->DeepestZoom();
            m_tiles->Attribution =
                m_tiles->Attribution.empty() ? m_tileFile->Attribution() : m_tiles->Attribution;
        }
    }
    MakeBrowser();
    SetTimer(TimerPoll, FirstPoll);
    if (!Title.empty()) {
        setWindowTitle(ToQt(Title));
    }
    m_list->setFocus();
}

void CDlgMap::MakeBrowser() {
    const CWaitCursor wait;
    WebOptions options;
    options.Serve = [this](const QString& host, const QString& path) {
        return Serve(FromQt(host), FromQt(path));
    };
    if (!m_tiles->Address.empty() && m_tiles->File.empty()) {
        options.Origins.append(ToQt(OriginOf(m_tiles->Address)));
    }
    QString reason;
    m_browser =
        MakeWebBrowser(ToQt(HostFiles().HostPath(GetAppFolder() + "drovane-web")), options, m_frame, reason);
    if (m_browser == nullptr) {
        ShowMessage(MessageNoBrowser, "\r\n" + FromQt(reason));
        return;
    }
    m_frame->layout()->addWidget(m_browser->Widget());
    // What was told to wait two seconds for needn't, once the page is there.
    m_browser->OnReadyState = [this] {
        if (m_browser->ReadyState() == CWebBrowser2::Complete) {
            SetTimer(TimerPoll, EachPoll);
        }
    };
    m_browser->Navigate2("drovane://map/map.srp");
}

WebReply CDlgMap::Serve(const std::string& host, const std::string& path) const {
    const MapFile file = host == "map"       ? ReadPageFile(path)
                         : host == "picture" ? ReadPicture(path, m_pictures)
                         : host == "tile"    ? ReadTile(path, m_tileFile.get())
                                             : MapFile();
    return {QByteArray(file.Type), QByteArray::fromStdString(file.Bytes)};
}

void CDlgMap::OnTimer(int id) {
    if (id == TimerSelection) {
        KillTimer(id);
        ShowSelected();
    } else if (id == TimerPoll) {
        Poll();
    }
}

void CDlgMap::Poll() {
    // One answer at a time: a slow page mustn't gather a queue.
    if (m_polling || m_printing || m_browser == nullptr) {
        return;
    }
    m_polling = m_browser->ReadScriptVariable(ReadEvents, [this](const QVariant& value) {
        m_polling = false;
        TakeEvents(FromQt(value.toString()));
    });
}

void CDlgMap::TakeEvents(const std::string& events) {
    const std::size_t blank = std::min(events.find(' '), events.size());
    const int clicked = events.empty() ? NoVariable : ParseInt(std::string_view(events).substr(0, blank));
    const int opened = blank == events.size() ? -1 : ParseInt(std::string_view(events).substr(blank + 1));
    if (clicked == NoVariable) {
        // A page that is missing or broken is drawn once, and looked at now and then.
        if (!m_silent) {
            m_silent = true;
            Draw();
        }
        SetTimer(TimerPoll, FirstPoll);
    } else if (clicked < -1) {
        m_silent = false;
        Draw();
        SelectRow(0, true);
        SetTimer(TimerPoll, EachPoll);
    } else if (clicked >= 0 && clicked < m_list->RowCount()) {
        SelectRow(clicked, false);
        ShowBubble(clicked);
    }
    if (opened >= 0) {
        OpenRow(opened);
    }
}

void CDlgMap::Draw() {
    const CWaitCursor wait;
    _PRO_DATA attributes;
    (void)m_database.ReadAttrib(attributes);
    std::string script = Guarded(DetailsCall(m_database, attributes.CriterionName, m_content, *m_tiles));
    for (const std::string& call : MapCalls(m_content)) {
        script += Guarded(call);
    }
    (void)m_browser->RunScript(ToQt(script));
}

void CDlgMap::SelectRow(int row, bool later) {
    m_list->SelectRow(row);
    if (later) {
        m_lastSelection = -1;
        SetTimer(TimerSelection, AfterSelection);
    } else {
        m_lastSelection = row;
    }
}

void CDlgMap::ShowSelected() {
    const int row = m_list->SelectedRow();
    if (m_browser != nullptr && m_browser->ReadyState() == CWebBrowser2::Complete && row != m_lastSelection) {
        m_lastSelection = row;
        if (row >= 0) {
            ShowBubble(row);
        }
    }
}

void CDlgMap::ShowBubble(int row) {
    if (row < m_content.Records.GetSize()) {
        (void)m_browser->RunScript(
            ToQt(Guarded(ShowInfoWndCall(m_content.Records[row], BubbleOf(m_database, m_content, row))) +
                 Guarded("MarkShown(" + FormatInt(row) + ")")));
    }
}

void CDlgMap::OpenRow(int row) {
    if (row >= 0 && row < m_content.Records.GetSize()) {
        ChosenSection = m_content.Records[row].TestingID;
        ChosenRecord = m_content.Records[row].ID;
        EndDialog(IdOk);
    }
}

void CDlgMap::OnOK() {
    OpenRow(m_list->SelectedRow());
}

void CDlgMap::Save(bool asPicture) {
    if (m_printing || m_browser == nullptr || m_browser->ReadyState() != CWebBrowser2::Complete) {
        return;
    }
    const char* extension = asPicture ? "png" : "pdf";
    m_target =
        Prompts().PickSaveFile(LoadMessage(asPicture ? MessageSavePng : MessageSavePdf), Title, extension,
                               {{asPicture ? "PNG(*.png)" : "PDF(*.pdf)", {std::string("*.") + extension}}});
    if (m_target.empty()) {
        return;
    }
    m_target = WithExtension(m_target, std::string(".") + extension);
    m_asPicture = asPicture;
    m_printing = true;
    for (const int id : {IdPdf, IdPng, IdPaper}) {
        EnableControl(id, false);
    }
    const bool large = m_paper->currentIndex() == 1;
    // Across, within the margins.
    const int width = static_cast<int>(((large ? 420 : 297) - 2 * PageMargin) * PixelsPerMillimetre);
    const int height = static_cast<int>(((large ? 297 : 210) - 2 * PageMargin) * PixelsPerMillimetre) - 2;
    (void)m_browser->RunScript(
        ToQt(Guarded("PreparePrint(" + FormatInt(width) + "," + FormatInt(height) + ")")));
    WaitForPrint(PrintTries);
}

void CDlgMap::WaitForPrint(int tries) {
    const auto again = [this, tries](const QVariant& ready) {
        if (ready.toInt() == 1 || tries == 0) {
            Print();
        } else {
            QTimer::singleShot(PrintStep, this, [this, tries] { WaitForPrint(tries - 1); });
        }
    };
    if (!m_browser->ReadScriptVariable("typeof nPrintReady==='undefined'?1:nPrintReady", again)) {
        FinishPrint({}, m_target);
    }
}

void CDlgMap::Print() {
    const QPageLayout layout(
        QPageSize(m_paper->currentIndex() == 1 ? QPageSize::A3 : QPageSize::A4), QPageLayout::Landscape,
        QMarginsF(PageMargin, PageMargin, PageMargin, PageMargin), QPageLayout::Millimeter);
    m_browser->PrintToPdf(layout, [this](const QByteArray& pdf) {
        (void)m_browser->RunScript(ToQt(Guarded("EndPrint()")));
        const CWaitCursor wait;
        FinishPrint(m_asPicture ? PngOf(m_browser->RenderPdf(pdf, PictureDots)) : pdf.toStdString(),
                    m_target);
    });
}

void CDlgMap::FinishPrint(const std::string& bytes, const std::string& path) {
    m_printing = false;
    for (const int id : {IdPdf, IdPng, IdPaper}) {
        EnableControl(id, true);
    }
    if (bytes.empty() || !HostFiles().WriteFile(path, bytes)) {
        ShowMessage(MessageNotSaved, "\r\n" + HostFiles().HostPath(path));
    }
}
