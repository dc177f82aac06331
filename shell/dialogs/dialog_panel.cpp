// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/dialog_panel.h"

#include "shell/dialogs/character_grid.h"
#include "shell/dialogs/dialog_keys.h"

#include <QBoxLayout>
#include <QEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>
#include <QTextOption>

namespace {

// More than a few screens is not read from a sofa, and laying it out would hold the box up.
constexpr int longestText = 4000;
constexpr int longestEntry = 1000;

// The window's style sheet makes transparent whatever is not styled here.
const char opaqueStyle[] = R"(
    DialogPanel { background: rgba(0, 0, 0, 130); }
    QFrame#panel { background: #16202c; border: %2px solid #7f8fa3; border-radius: %1px; }
    QLabel, QPlainTextEdit, QPushButton { color: #ffffff; font-size: %1px; }
    QLabel#origin { color: #a9b8c8; font-size: %3px; }
    QPlainTextEdit { background: #16202c; border: none; }
    QLabel#field { background: #ffffff; color: #000000; padding: %2px %3px; }
    QPushButton { background: #2c3b4d; border: %2px solid #2c3b4d; border-radius: %2px;
                  padding: %2px %3px; }
    QPushButton[character="true"] { padding: %2px 0px; }
    QPushButton[current="true"] { background: #ffd24a; color: #000000; border-color: #ffffff; }
    QScrollBar { background: #2c3b4d; width: %3px; }
    QScrollBar::handle { background: #a9b8c8; min-height: %1px; }
    QScrollBar::add-line, QScrollBar::sub-line { height: 0px; }
    QScrollBar::add-page, QScrollBar::sub-page { background: #2c3b4d; }
)";

/** What of a text is shown: its beginning, and blanks for what would end it early. */
QString shownText(const QString &text)
{
    QString shown = text.left(longestText);
    if (shown.size() < text.size())
        shown += QChar(0x2026);
    return shown.replace(QChar(0), QChar(' '));
}

void mark(QPushButton *button, bool current)
{
    button->setProperty("current", current);
    button->style()->unpolish(button);
    button->style()->polish(button);
}

} // namespace

DialogPanel::DialogPanel(const Dialog &dialog, QWidget *parent)
    : QWidget(parent)
    , m_unit(qMax(16, parent->height() / 22))
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QString(opaqueStyle).arg(m_unit).arg(qMax(2, m_unit / 10)).arg(m_unit * 2 / 3));
    setGeometry(parent->rect());
    parent->installEventFilter(this);

    m_panel = new QFrame(this);
    m_panel->setObjectName("panel");
    m_panel->setFixedWidth(parent->width() * 7 / 10);
    auto *centred = new QVBoxLayout(this);
    centred->addWidget(m_panel, 0, Qt::AlignCenter);
    auto *layout = new QVBoxLayout(m_panel);
    layout->setContentsMargins(m_unit, m_unit, m_unit, m_unit);
    layout->setSpacing(m_unit / 2);
    buildText(dialog, layout);
    if (dialog.kind == Dialog::Kind::Prompt) {
        m_entered = dialog.initial.left(longestEntry);
        buildField(layout);
        buildCharacters(layout);
    }
    buildButtons(dialog.kind, layout);
    // A text that is there is most often right; an empty one begins among the characters.
    const bool empty = m_field && m_entered.isEmpty();
    select(empty ? 0 : m_rows.size() - 1, 0);
    show();
    raise();
}

void DialogPanel::buildText(const Dialog &dialog, QBoxLayout *layout)
{
    if (!dialog.origin.isEmpty()) {
        auto *origin = new QLabel(m_panel);
        origin->setObjectName("origin");
        origin->setTextFormat(Qt::PlainText);
        origin->setText(dialog.origin);
        layout->addWidget(origin);
    }

    m_text = new QPlainTextEdit(m_panel);
    m_text->setReadOnly(true);
    m_text->setFocusPolicy(Qt::NoFocus);
    m_text->setTextInteractionFlags(Qt::NoTextInteraction);
    m_text->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_text->setPlainText(shownText(dialog.text));
    m_text->ensurePolished();
    // As high as the text, up to what leaves room for the rest.
    QTextDocument measured;
    measured.setDefaultFont(m_text->font());
    measured.setDefaultTextOption(m_text->document()->defaultTextOption());
    measured.setPlainText(m_text->toPlainText());
    measured.setTextWidth(m_panel->width() - 3 * m_unit);
    const int most = height() * (dialog.kind == Dialog::Kind::Prompt ? 15 : 55) / 100;
    m_text->setFixedHeight(qMin(int(measured.size().height()) + m_unit / 2, most));
    layout->addWidget(m_text);
}

void DialogPanel::buildField(QBoxLayout *layout)
{
    m_field = new QLabel(m_panel);
    m_field->setObjectName("field");
    m_field->setTextFormat(Qt::PlainText);
    layout->addWidget(m_field);
    showEntered();
}

void DialogPanel::buildCharacters(QBoxLayout *layout)
{
    const QStringList rows = characterRows(false);
    for (const QString &characters : rows) {
        QBoxLayout *row = addRow(layout);
        row->setSpacing(m_unit / 6);
        for (int i = 0; i < characters.size(); ++i) {
            QPushButton *button = addButton(QString(), row);
            button->setProperty("character", true);
            connect(button, &QPushButton::clicked, this,
                    [this, button] { enter(button->property("types").toString()); });
        }
    }
    m_shifted = true;
    shift();
}

void DialogPanel::buildButtons(Dialog::Kind kind, QBoxLayout *layout)
{
    QBoxLayout *row = addRow(layout);
    if (kind != Dialog::Kind::Prompt)
        row->addStretch();
    connect(addButton(tr("OK"), row), &QPushButton::clicked, this, [this] { emit decided(true); });
    if (kind == Dialog::Kind::Prompt) {
        connect(addButton("A/a", row), &QPushButton::clicked, this, &DialogPanel::shift);
        connect(addButton(tr("Space"), row), &QPushButton::clicked, this, [this] { enter(" "); });
        connect(addButton(tr("Delete"), row), &QPushButton::clicked, this, &DialogPanel::erase);
    }
    if (kind != Dialog::Kind::Alert)
        connect(addButton(tr("Cancel"), row), &QPushButton::clicked, this,
                [this] { emit decided(false); });
    if (kind != Dialog::Kind::Prompt)
        row->addStretch();
}

QBoxLayout *DialogPanel::addRow(QBoxLayout *layout)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(m_unit / 2);
    layout->addLayout(row);
    m_rows.append(QVector<QPushButton *>());
    return row;
}

QPushButton *DialogPanel::addButton(const QString &label, QBoxLayout *row)
{
    auto *button = new QPushButton(label, m_panel);
    button->setFocusPolicy(Qt::NoFocus);
    row->addWidget(button);
    m_rows.last().append(button);
    return button;
}

void DialogPanel::pressKey(const QKeyEvent &event)
{
    const DialogKey key = dialogKeyOf(event.key());
    const QVector<QPushButton *> &row = m_rows[m_row];
    switch (key) {
    case DialogKey::Up: return moveRow(-1);
    case DialogKey::Down: return moveRow(1);
    case DialogKey::Left: return select(m_row, qMax(0, m_column - 1));
    case DialogKey::Right: return select(m_row, qMin(m_column + 1, row.size() - 1));
    case DialogKey::PageUp: return scroll(-1);
    case DialogKey::PageDown: return scroll(1);
    case DialogKey::Ok:
        // A key that is held down has done its work with its first press.
        if (!event.isAutoRepeat())
            row[m_column]->click();
        return;
    case DialogKey::Back:
        if (!event.isAutoRepeat())
            emit decided(false);
        return;
    case DialogKey::Erase: return erase();
    case DialogKey::Box:
    case DialogKey::Text:
        enter(event.text());
        // Whoever has keys for the text needs no characters on the screen, but OK.
        return select(m_rows.size() - 1, 0);
    }
}

void DialogPanel::moveRow(int step)
{
    const int row = m_row + step;
    // With a single row of buttons the arrows are free for the text.
    if (m_rows.size() == 1)
        return scroll(step);
    if (row < 0 || row >= m_rows.size())
        return;
    QVector<int> centres;
    for (const QPushButton *button : qAsConst(m_rows[row]))
        centres.append(button->geometry().center().x());
    select(row, nearestCell(centres, m_rows[m_row][m_column]->geometry().center().x()));
}

void DialogPanel::select(int row, int column)
{
    mark(m_rows[m_row][m_column], false);
    m_row = row;
    m_column = column;
    mark(m_rows[m_row][m_column], true);
}

void DialogPanel::scroll(int pages)
{
    QScrollBar *bar = m_text->verticalScrollBar();
    bar->setValue(bar->value() + pages * qMax(1, bar->pageStep() - 1));
}

void DialogPanel::enter(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    if (!m_field || characters.isEmpty() || !QChar::isPrint(characters.first()))
        return;
    m_entered = (m_entered + text).left(longestEntry);
    showEntered();
}

void DialogPanel::erase()
{
    const bool pair = m_entered.size() > 1 && m_entered.at(m_entered.size() - 1).isLowSurrogate();
    m_entered.chop(pair ? 2 : 1);
    if (m_field)
        showEntered();
}

void DialogPanel::shift()
{
    m_shifted = !m_shifted;
    const QStringList rows = characterRows(m_shifted);
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows[row].size(); ++column) {
            const QString character = rows[row].at(column);
            m_rows[row][column]->setProperty("types", character);
            // A single ampersand would mark a shortcut.
            m_rows[row][column]->setText(character == "&" ? "&&" : character);
        }
    }
}

void DialogPanel::showEntered()
{
    // The end is where one types, so that is what stays in sight.
    const QString text = m_entered + QChar(0x258f);
    const int room = m_panel->width() - 4 * m_unit;
    m_field->ensurePolished();
    m_field->setText(m_field->fontMetrics().elidedText(text, Qt::ElideLeft, room));
}

bool DialogPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}
