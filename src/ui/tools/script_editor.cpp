// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/script_editor.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTextBlock>
#include <QToolTip>

#include "script/command_reference.h"
#include "script/script_line.h"
#include "ui/tools/script_highlighter.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype kOfferFrom = 2;  // letters
constexpr int kNameRole = Qt::UserRole;

// The reference of a command, as a tool tip.
QString HelpOf(const CommandRow& row) {
  QString help = QStringLiteral("<b>%1</b><p>").arg(CommandShape(row).toHtmlEscaped());
  for (const QString& sentence : {FromAscii(row.help), ConditionSentence(row.condition)}) {
    help += sentence.toHtmlEscaped() + QLatin1Char(' ');
  }
  for (const FieldSpec& field : row.fields) {
    help +=
        QStringLiteral("<p><i>%1</i>: %2")
            .arg(FromAscii(field.name).toHtmlEscaped(), FieldSentences(row, field).toHtmlEscaped());
  }
  return help;
}

// What is offered: the shape to read, the name to find it by, and its help.
QStandardItemModel* MakeCommandModel(QObject* parent) {
  QMap<QString, const CommandRow*> rows;
  for (const CommandRow& row : AllCommands()) {
    rows.insert(CommandName(row), &row);
  }
  auto* model = new QStandardItemModel(parent);
  for (auto each = rows.cbegin(); each != rows.cend(); ++each) {
    auto* item = new QStandardItem(CommandShape(*each.value()));
    item->setData(each.key(), kNameRole);
    item->setToolTip(HelpOf(*each.value()));
    model->appendRow(item);
  }
  return model;
}

}  // namespace

ScriptEditor::ScriptEditor(QWidget* parent)
    : QPlainTextEdit(parent),
      highlighter_(new ScriptHighlighter(document(), palette())),
      completer_(new QCompleter(this)) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
  completer_->setModel(MakeCommandModel(completer_));
  completer_->setCompletionRole(kNameRole);
  completer_->setCaseSensitivity(Qt::CaseInsensitive);
  completer_->setModelSorting(QCompleter::CaseInsensitivelySortedModel);
  completer_->setWidget(this);
  completer_->popup()->setFont(font());
  connect(completer_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
          &ScriptEditor::Complete);
  typing_timer_.setSingleShot(true);
  typing_timer_.setInterval(150ms);
  connect(&typing_timer_, &QTimer::timeout, this, &ScriptEditor::findingsChanged);
  connect(document(), &QTextDocument::contentsChanged, &typing_timer_, qOverload<>(&QTimer::start));
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ScriptEditor::ShowShape);
  connect(document(), &QTextDocument::contentsChanged, this, &ScriptEditor::ShowShape);
}

// Not toPlainText(), which makes blanks of the blanks that do not break.
QString ScriptEditor::Script() const {
  QString script;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    script += block.text() + (block.next().isValid() ? QStringLiteral("\r\n") : QString());
  }
  return script;
}

void ScriptEditor::SetScript(const QStringList& lines) {
  QString text;
  for (const QString& line : lines) {
    text += line + QLatin1Char('\n');
  }
  setPlainText(text);
  document()->setModified(false);
}

void ScriptEditor::ReplaceScript(const QStringList& lines) {
  QTextCursor cursor(document());
  cursor.select(QTextCursor::Document);
  cursor.insertText(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

QStringList ScriptEditor::Lines() const {
  QStringList lines;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    lines.append(block.text());
  }
  return lines;
}

QList<ScriptFinding> ScriptEditor::Findings() const {
  return LintScript(Lines(), kind_, update_lines_);
}

void ScriptEditor::GoToFinding(const ScriptFinding& found) {
  const QTextBlock block = document()->findBlockByNumber(found.line - 1);
  if (!block.isValid()) {
    return;
  }
  const auto last = static_cast<qsizetype>(block.length()) - 1;  // the text may have changed since
  const qsizetype start = std::min(found.finding.start, last);
  const qsizetype end = std::min(start + found.finding.length, last);
  QTextCursor cursor(block);
  cursor.setPosition(block.position() + static_cast<int>(start));
  cursor.setPosition(block.position() + static_cast<int>(end), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

QString ScriptEditor::Sentence(const LintFinding& finding) const {
  return translator_ != nullptr ? LintSentence(finding, *translator_) : LintSentence(finding);
}

void ScriptEditor::ShowShape() {
  const ScriptLine line = ParseScriptLine(textCursor().block().text());
  const CommandRow* row = FindCommand(line.name);
  Q_EMIT shapeChanged(row != nullptr ? CommandShape(*row) : QString(),
                      row != nullptr ? HelpOf(*row) : QString());
}

// The part of a name between the beginning of its line and the caret. A caret in the argument, or
// after a blank, has none.
QString ScriptEditor::TypedName() const {
  const QTextCursor cursor = textCursor();
  const QString typed = cursor.block().text().left(cursor.positionInBlock());
  const bool is_name = std::ranges::all_of(
      typed, [](QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); });
  return is_name ? typed : QString();
}

void ScriptEditor::keyPressEvent(QKeyEvent* event) {
  if (completer_->popup()->isVisible()) {
    const bool is_for_popup = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                              event->key() == Qt::Key_Tab || event->key() == Qt::Key_Escape;
    if (is_for_popup) {
      event->ignore();
      return;
    }
  }
  const bool was_asked =
      event->key() == Qt::Key_Space && event->modifiers().testFlag(Qt::ControlModifier);
  if (!was_asked) {
    QPlainTextEdit::keyPressEvent(event);
  }
  const bool is_typing = !event->text().isEmpty() && event->text().at(0).isPrint();
  if (was_asked || is_typing || event->key() == Qt::Key_Backspace) {
    OfferCompletion(was_asked);
  }
}

void ScriptEditor::OfferCompletion(bool was_asked) {
  const QString typed = TypedName();
  completer_->setCompletionPrefix(typed);
  const bool is_complete = completer_->completionCount() == 1 &&
                           completer_->currentCompletion().compare(typed, Qt::CaseInsensitive) == 0;
  const bool is_offered = was_asked ? textCursor().positionInBlock() == typed.size()
                                    : typed.size() >= kOfferFrom && !is_complete;
  if (!is_offered || completer_->completionCount() == 0) {
    completer_->popup()->hide();
    return;
  }
  QRect place = cursorRect();
  place.setWidth(completer_->popup()->sizeHintForColumn(0) +
                 completer_->popup()->verticalScrollBar()->sizeHint().width());
  completer_->complete(place);
  completer_->popup()->setCurrentIndex(completer_->completionModel()->index(0, 0));
}

// Puts the name, and quotes for its argument where the line has none, in place of what was typed.
void ScriptEditor::Complete(const QModelIndex& chosen) {
  QTextCursor cursor = textCursor();
  cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
  cursor.insertText(chosen.data(kNameRole).toString());
  const QString rest = cursor.block().text().mid(cursor.positionInBlock());
  if (!rest.startsWith(QLatin1Char('('))) {
    cursor.insertText(QStringLiteral("(\"\")"));
    cursor.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, 2);
  }
  setTextCursor(cursor);
}

void ScriptEditor::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    highlighter_->SetPalette(palette());
  }
}

bool ScriptEditor::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QPlainTextEdit::viewportEvent(event);
  }
  const auto* help = static_cast<QHelpEvent*>(event);
  const QTextCursor cursor = cursorForPosition(help->pos());
  const int place = cursor.positionInBlock();
  QStringList sentences;
  for (const LintFinding& finding : LintScriptLine(cursor.block().text())) {
    if (place >= finding.start && place <= finding.start + finding.length) {
      sentences.append(Sentence(finding).toHtmlEscaped());
    }
  }
  const ScriptLine line = ParseScriptLine(cursor.block().text());
  const CommandRow* row = FindCommand(line.name);
  if (row != nullptr && place <= line.name.size()) {
    sentences.append(HelpOf(*row));
  }
  QToolTip::showText(help->globalPos(), sentences.join(QStringLiteral("<br>")), viewport());
  return true;
}

}  // namespace quayline
