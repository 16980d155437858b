// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QTimer>

#include "script/script_lint.h"

class QCompleter;
class QModelIndex;

namespace quayline {

class ScriptHighlighter;

// Edits a router script: commands are highlighted, what the lint finds is underlined and explained
// in a tool tip, as is the command of a line, and the names of commands are completed, with the
// shape of their argument beside them, while one is typed or with Ctrl+Space.
class ScriptEditor final : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ScriptEditor(QWidget* parent = nullptr);

  // What the script is for, as the lint has to know.
  void SetKind(ScriptKind kind) { kind_ = kind; }
  // The lines of the router's update script, with which a view script is compared.
  void SetUpdateScript(const QStringList& lines) { update_lines_ = lines; }
  // For the tool tips' language; it outlives the editor. English without.
  void SetTranslator(const Translator* translator) { translator_ = translator; }

  // The script as the database holds it: CR LF after each line but the last, which is empty where
  // the text ends with a line break. No character is replaced.
  QString Script() const;
  QStringList Lines() const;
  void SetScript(const QStringList& lines);
  // As if the user had typed the lines: he can undo it.
  void ReplaceScript(const QStringList& lines);

  QList<ScriptFinding> Findings() const;
  // Selects what the finding is about, without taking the focus.
  void GoToFinding(const ScriptFinding& found);
  QString Sentence(const LintFinding& finding) const;

 Q_SIGNALS:
  // The text has changed, and nothing more was typed for a moment.
  void findingsChanged();
  // The caret is in a command's line: how the command is written, and its reference as rich text.
  // Both are empty in any other line.
  void shapeChanged(const QString& shape, const QString& help);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void ShowShape();
  void OfferCompletion(bool was_asked);
  void Complete(const QModelIndex& chosen);
  QString TypedName() const;

  ScriptKind kind_ = ScriptKind::kUpdate;
  QStringList update_lines_;
  const Translator* translator_ = nullptr;
  ScriptHighlighter* highlighter_;
  QCompleter* completer_;
  QTimer typing_timer_;
};

}  // namespace quayline
