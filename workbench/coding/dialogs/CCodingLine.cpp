#include "workbench/coding/dialogs/CCodingLine.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "workbench/coding/codingmessages.h"
#include "workbench/coding/dialogs/CCodeEdit.h"
#include "workbench/coding/dialogs/CCommentEdit.h"

namespace {

constexpr int MessageGiveEnd = 3311;
constexpr int LineCharacters = 24;

QString Filled(int message, const std::vector<std::string>& values) {
    return ToQt(FillText(LoadMessage(message), values));
}

std::string KeyOf(int place) {
    return FormatInt((place + 1) % CFavourites::Places);
}

std::string Metres(float metres) {
    return FormatFixed(static_cast<double>(metres), 2) + " m";
}

}  // namespace

CCodingLine::CCodingLine(QWidget* parent)
    : QWidget(parent),
      m_line(new CCodeEdit(this)),
      m_comment(new CCommentEdit(this)),
      m_text(new QLabel(this)),
      m_length(new QPushButton(MessageText(MessageGiveEnd), this)) {
    m_line->setObjectName("codingline");
    m_line->setPlaceholderText(MessageText(CodingMessage::LinePlaceholder));
    m_line->setToolTip(MessageText(CodingMessage::Keys));
    m_line->setFixedWidth(fontMetrics().horizontalAdvance('0') * LineCharacters);
    m_comment->setObjectName("codingcomment");
    m_comment->setPlaceholderText(MessageText(CodingMessage::CommentPlaceholder));
    m_text->setObjectName("codingmeaning");
    m_text->setTextFormat(Qt::RichText);
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_text->setMinimumHeight(fontMetrics().height() + 2);
    m_length->setObjectName("codinglength");
    m_length->setAutoDefault(false);
    connect(m_length, &QPushButton::clicked, this, [this] { OnGiveLength(); });
    for (QWidget* field : std::initializer_list<QWidget*>{m_line, m_comment, m_length}) {
        field->installEventFilter(this);
    }
    for (QLineEdit* edit : std::initializer_list<QLineEdit*>{m_line, m_comment}) {
        connect(edit, &QLineEdit::textChanged, this, [this] { Refresh(); });
    }
    auto* fields = new QHBoxLayout;
    fields->setSpacing(4);
    fields->addWidget(m_line);
    fields->addWidget(m_comment, 1);
    auto* meaning = new QHBoxLayout;
    meaning->addWidget(m_text, 1);
    meaning->addWidget(m_length);
    auto* favourites = new QHBoxLayout;
    favourites->setSpacing(2);
    MakeFavourites(favourites);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 4, 4, 2);
    rows->setSpacing(2);
    rows->addLayout(fields);
    rows->addLayout(meaning);
    rows->addLayout(favourites);
    hide();
}

void CCodingLine::MakeFavourites(QLayout* row) {
    for (int place = 0; place < CFavourites::Places; ++place) {
        auto* button = new QToolButton(this);
        button->setObjectName("favourite" + QString::number(place));
        button->setFocusPolicy(Qt::NoFocus);
        button->setAutoRaise(true);
        button->setContextMenuPolicy(Qt::CustomContextMenu);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumWidth(1);
        connect(button, &QToolButton::clicked, this, [this, place] { OnFavourite(place); });
        connect(button, &QWidget::customContextMenuRequested, this, [this, place] { OnFixFavourite(place); });
        auto* fix = new QShortcut(QKeySequence("Alt+Shift+" + ToQt(KeyOf(place))), this);
        fix->setContext(Qt::WidgetWithChildrenShortcut);
        connect(fix, &QShortcut::activated, this, [this, place] { OnFixFavourite(place); });
        row->addWidget(button);
        m_favourites[static_cast<std::size_t>(place)] = button;
    }
}

void CCodingLine::ShowFavourites(const CFavourites& favourites) {
    for (int place = 0; place < CFavourites::Places; ++place) {
        QToolButton* button = m_favourites[static_cast<std::size_t>(place)];
        const std::string& label = favourites.At(place);
        const std::string key = KeyOf(place);
        const QString name = label.empty() ? QString("–") : ToQt(label);
        button->setText(ToQt(key) + " " + name + (favourites.IsFixed(place) ? "•" : ""));
        button->setToolTip(label.empty() ? Filled(CodingMessage::NoFavourite, {key, key})
                                         : Filled(CodingMessage::Favourite, {key, label, key}));
        button->setAccessibleName(button->toolTip());
    }
}

QLineEdit& CCodingLine::Comment() {
    return *m_comment;
}

void CCodingLine::Open(const std::string& begin) {
    if (isHidden()) {
        m_comment->clear();
    }
    m_line->setText(ToQt(begin));
    show();
    Refresh();
    m_line->setFocus();
    m_line->end(false);
}

void CCodingLine::Close() {
    hide();
    m_line->clear();
    m_comment->clear();
}

CodingLine CCodingLine::Typed() const {
    return ReadCodingLine(FromQt(m_line->text()), FromQt(m_comment->text()));
}

void CCodingLine::Refresh() {
    if (isHidden() || !Understand) {
        return;
    }
    m_meaning = Understand(Typed());
    const QString text = MeaningText();
    m_text->setText(text);
    m_text->setToolTip(text);
    m_length->setVisible(m_meaning.Problems.size() == 1 &&
                         m_meaning.Problems[0].Field == CodingField::Length);
}

QString CCodingLine::MeaningText() const {
    const CodingMeaning& meaning = m_meaning;
    QStringList parts;
    const bool empty = m_line->text().trimmed().isEmpty();
    if (!meaning.Problems.empty() && !empty) {
        parts << "<span style='color:" + QColor::fromRgb(WarningColour).name() + "'>" +
                     ToQt(meaning.Problems[0].Text).toHtmlEscaped() + "</span>";
    }
    if (meaning.Manhole) {
        parts << "<b>" + Filled(CodingMessage::Manhole, {meaning.Name}).toHtmlEscaped() + "</b>";
        return parts.join(" &nbsp; ");
    }
    if (meaning.Mark == CodingLine::Run::Ends) {
        if (meaning.EndedRun >= 0) {
            parts << "<b>" +
                         Filled(CodingMessage::RunEnds,
                                {meaning.Code + FormatInt(meaning.Grade) + " " + meaning.Name})
                             .toHtmlEscaped() +
                         "</b>";
        }
    } else if (!meaning.Code.empty()) {
        parts << "<b>" + ToQt(meaning.Code + " " + meaning.Name).toHtmlEscaped() + "</b>";
    }
    if (meaning.Grade > 0 && meaning.Mark != CodingLine::Run::Ends) {
        parts << "<b>" + Filled(CodingMessage::Grade, {FormatInt(meaning.Grade)}).toHtmlEscaped() + "</b>";
    }
    if (meaning.Start && meaning.End) {
        parts << "<b>" + ToQt(Metres(*meaning.Start) + (meaning.IsRun ? " ~ " + Metres(*meaning.End) : "")) +
                     "</b>";
    }
    if (meaning.Mark == CodingLine::Run::Begins) {
        parts << MessageText(CodingMessage::RunBegins).toHtmlEscaped();
    }
    if (!meaning.Code.empty() && meaning.Mark != CodingLine::Run::Ends) {
        const QString quiet = "<span style='color:" + QColor::fromRgb(QuietTextColour).name() + "'>";
        parts << (meaning.ClockAssumed
                      ? quiet + MessageText(CodingMessage::ClockAssumed).toHtmlEscaped() + "</span>"
                      : Filled(CodingMessage::Clock,
                               {FormatInt(meaning.ClockStart), FormatInt(meaning.ClockEnd)})
                            .toHtmlEscaped());
        if (!meaning.GradeText.empty()) {
            parts << quiet + ToQt(meaning.GradeText).toHtmlEscaped() + "</span>";
        }
    }
    if (parts.isEmpty()) {
        parts << "<span style='color:" + QColor::fromRgb(QuietTextColour).name() + "'>" +
                     MessageText(CodingMessage::Keys).toHtmlEscaped() + "</span>";
    }
    return parts.join(" &nbsp; ");
}

void CCodingLine::ShowProblem() {
    Refresh();
    if (m_meaning.Problems.empty()) {
        return;
    }
    const CodingProblem& problem = m_meaning.Problems[0];
    m_text->setText("<b><span style='color:" + QColor::fromRgb(WarningColour).name() + "'>" +
                    ToQt(problem.Text).toHtmlEscaped() + "</span></b>");
    if (!m_length->isHidden()) {
        m_length->setFocus();
    } else {
        m_line->setFocus();
        m_line->end(false);
    }
}

std::span<const CCodingLine::Key> CCodingLine::Keys() {
    using Self = CCodingLine;
    static const std::array<Key, 5> Table{{
        {"Return", 3156, [](Self& line) { line.OnEnter(); }},
        {"Shift+Return", 3153, [](Self& line) { line.OnForm(); }},
        {"Tab", 3157, nullptr},
        {"Esc", 3154, [](Self& line) { line.OnLeave(); }},
        {"Alt+Shift+1 … 0", 3147, nullptr},
    }};
    return Table;
}

bool CCodingLine::TakeKey(const QObject* watched, const QKeyEvent& event) {
    const int code = event.key() == Qt::Key_Enter ? Qt::Key_Return : event.key();
    const QKeySequence typed((event.modifiers() & ~Qt::KeypadModifier) | Qt::Key(code));
    for (const Key& key : Keys()) {
        if (key.Do == nullptr || typed != QKeySequence(key.Keys)) {
            continue;
        }
        if (watched == m_comment && m_comment->IsComposing()) {
            return true;
        }
        if (watched == m_length && code == Qt::Key_Return) {
            m_length->click();
        } else {
            key.Do(*this);
        }
        return true;
    }
    return false;
}

bool CCodingLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && TakeKey(watched, *static_cast<QKeyEvent*>(event))) {
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
