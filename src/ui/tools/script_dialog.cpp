// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/script_dialog.h"

#include <QEvent>
#include <QScreen>
#include <QTextBlock>

#include <algorithm>

#include "core/router_session.h"
#include "core/shipped_databases.h"
#include "i18n/isolated.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/script_bench.h"
#include "ui/tools/tool_texts.h"
#include "ui_script_dialog.h"

namespace quayline {

namespace {

// More are not useful, and a list of them all takes seconds to lay out.
constexpr qsizetype kMaxFindingsShown = 500;

}  // namespace

ScriptDialog::ScriptDialog(AppContext& context, Prompts& prompts, PageHostFactory make_host,
                           QWidget* parent, std::function<void()> written)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      make_host_(std::move(make_host)),
      written_(std::move(written)),
      router_id_(context.session.router_id),
      shipped_(FindShippedRouter(context.program_folder, context.session.router_name)),
      ui_(std::make_unique<Ui::ScriptDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  ShowTitle();
  OpenOver(*this, {820, 640});
  ui_->splitter->setSizes({460, 120});
  ui_->view_script_editor->SetKind(ScriptKind::kView);
  ui_->update_script_editor->SetScript(context.session.update_script);
  ui_->view_script_editor->SetScript(context.session.view_script);
  ConnectEditor(ui_->update_script_editor, ui_->save_update_script_button,
                ui_->update_script_shape_label);
  ConnectEditor(ui_->view_script_editor, ui_->save_view_script_button,
                ui_->view_script_shape_label);
  connect(ui_->save_update_script_button, &QPushButton::clicked, this, [this] {
    Save(ui_->update_script_editor, ui_->save_update_script_button, &RouterRecord::routercommands);
  });
  connect(ui_->save_view_script_button, &QPushButton::clicked, this, [this] {
    Save(ui_->view_script_editor, ui_->save_view_script_button, &RouterRecord::routerportpage);
  });
  connect(ui_->script_pages, &QTabWidget::currentChanged, this, &ScriptDialog::ShowScript);
  connect(ui_->restore_button, &QPushButton::clicked, this, &ScriptDialog::AskToRestore);
  connect(ui_->bench_button, &QPushButton::toggled, this, &ScriptDialog::ShowBench);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::close);
  connect(ui_->findings_list, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0 && row < findings_.size() && ui_->findings_list->hasFocus()) {
      Editor()->GoToFinding(findings_.at(row));
    }
  });
  connect(ui_->findings_list, &QListWidget::itemActivated, this, [this] { Editor()->setFocus(); });
  ShowScript();
}

ScriptDialog::~ScriptDialog() = default;

void ScriptDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    ShowTitle();
  }
}

void ScriptDialog::ShowTitle() {
  setWindowTitle(Text(message::kScriptsFor) + QStringLiteral(" - ") +
                 Isolated(context_.session.router_name, context_.translator));
}

void ScriptDialog::ShowBench(bool shown) {
  if (shown && context_.job_flags.IsRunning()) {
    ui_->bench_button->setChecked(false);
    prompts_.Tell(this, Text(message::kJobRunsAlready));
    return;
  }
  if (bench_ == nullptr && shown) {
    const auto place = [this] {
      return ScriptBench::Place{.lines = Editor()->Script().split(QStringLiteral("\r\n")),
                                .line = Editor()->textCursor().blockNumber()};
    };
    bench_ = new ScriptBench(context_, prompts_, make_host_, place, this);
    connect(bench_, &ScriptBench::linesPicked, this, &ScriptDialog::InsertLines);
    ui_->sides->addWidget(bench_);
    constexpr int kPageWidth = 560;
    const QRect screen = this->screen()->availableGeometry();
    resize(std::min(width() + kPageWidth, screen.width()), height());
    ui_->sides->setSizes({width() - kPageWidth, kPageWidth});
  }
  if (bench_ != nullptr) {
    bench_->setVisible(shown);
  }
}

// After the line with the caret, which stays where it is if that line is empty.
void ScriptDialog::InsertLines(const QStringList& lines) {
  if (lines.isEmpty()) {
    return;
  }
  QTextCursor cursor = Editor()->textCursor();
  cursor.movePosition(QTextCursor::EndOfBlock);
  const bool is_empty = cursor.block().text().trimmed().isEmpty();
  cursor.insertText((is_empty ? QString() : QStringLiteral("\n")) + lines.join(QLatin1Char('\n')));
  Editor()->setTextCursor(cursor);
  Editor()->setFocus();
}

// Called however the window is closed. A save that a line has started is waited for.
void ScriptDialog::done(int result) {
  if (bench_ != nullptr) {
    bench_->Leave(*this);
  }
  QDialog::done(result);
}

void ScriptDialog::ConnectEditor(ScriptEditor* editor, QPushButton* save, QLabel* shape) {
  editor->SetTranslator(&context_.translator);
  save->setIcon(ThemeIcon(QStringLiteral("save")));
  connect(editor, &ScriptEditor::shapeChanged, shape,
          [shape](const QString& text, const QString& help) {
            shape->setText(text);
            shape->setToolTip(help);
          });
  connect(editor, &ScriptEditor::findingsChanged, this, [this, editor] {
    if (editor == Editor()) {
      ShowFindings();
    }
  });
  connect(editor, &QPlainTextEdit::textChanged, this, [this, save] {
    save->setEnabled(true);
    ui_->saved_label->clear();
  });
}

ScriptEditor* ScriptDialog::Editor() const {
  return ui_->script_pages->currentIndex() == 0 ? ui_->update_script_editor
                                                : ui_->view_script_editor;
}

// With the arrow keys the user goes through the tabs themselves.
void ScriptDialog::ShowScript() {
  if (!ui_->script_pages->tabBar()->hasFocus()) {
    Editor()->setFocus();
  }
  ShowFindings();
}

QStringList ScriptDialog::ShippedLines() const {
  if (!shipped_) {
    return {};
  }
  return ScriptLines(ui_->script_pages->currentIndex() == 0 ? shipped_->routercommands
                                                            : shipped_->routerportpage);
}

void ScriptDialog::AskToRestore() {
  prompts_.AskCarefully(this, Text(message::kRestoreTitle), Text(message::kRestore),
                        [this](bool yes) {
                          if (yes) {
                            Editor()->ReplaceScript(ShippedLines());
                            Editor()->setFocus();
                          }
                        });
}

void ScriptDialog::ShowFindings() {
  const QStringList shipped = ShippedLines();
  ui_->restore_button->setEnabled(!shipped.isEmpty() && ScriptLines(Editor()->Script()) != shipped);
  ui_->view_script_editor->SetUpdateScript(ui_->update_script_editor->Lines());
  findings_ = Editor()->Findings();
  ui_->findings_list->clear();
  const qsizetype shown = std::min(findings_.size(), kMaxFindingsShown);
  for (const ScriptFinding& found : std::as_const(findings_).first(shown)) {
    const bool is_error = found.finding.severity == LintSeverity::kError;
    ui_->findings_list->addItem(
        Text(is_error ? message::kFindingError : message::kFindingWarning)
            .arg(QString::number(found.line), Editor()->Sentence(found.finding)));
  }
  const auto errors = std::ranges::count_if(findings_, [](const ScriptFinding& found) {
    return found.finding.severity == LintSeverity::kError;
  });
  ui_->findings_label->setText(
      findings_.isEmpty() ? Text(message::kNoFindings)
                          : Text(message::kFindings)
                                .arg(QString::number(findings_.size()), QString::number(errors)));
}

void ScriptDialog::Save(ScriptEditor* editor, QPushButton* save, QString RouterRecord::* field) {
  save->setEnabled(false);
  if (router_id_ == 0) {
    save->setEnabled(true);
    prompts_.Tell(this, Text(message::kNoRouterChosen));
    return;
  }
  const bool is_written = Write(editor->Script(), field);
  written_();
  if (!is_written) {
    save->setEnabled(true);
    prompts_.Tell(this, Text(message::kCannotSaveScript));
    return;
  }
  editor->document()->setModified(false);
  ui_->saved_label->setText(Text(message::kScriptSaved));
}

// The other script stays as it is in the database, not as its editor shows it. Only the scripts
// that came with the program were tried by its makers.
bool ScriptDialog::Write(const QString& script, QString RouterRecord::* field) {
  auto record = context_.databases.FindRouter(router_id_);
  if (!record) {
    return false;
  }
  (*record).*field = script;
  const bool is_shipped =
      shipped_ && ScriptLines(record->routercommands) == ScriptLines(shipped_->routercommands) &&
      ScriptLines(record->routerportpage) == ScriptLines(shipped_->routerportpage);
  return context_.databases.UpdateRouterScripts(router_id_, record->routercommands,
                                                record->routerportpage,
                                                is_shipped ? shipped_->routertested : QString());
}

// Called however the window is closed.
void ScriptDialog::reject() {
  if (!ui_->view_script_editor->document()->isModified() &&
      !ui_->update_script_editor->document()->isModified()) {
    QDialog::reject();
    return;
  }
  prompts_.AskCarefully(this, Text(message::kUnsavedTitle), Text(message::kUnsaved),
                        [this](bool yes) {
                          if (yes) {
                            QDialog::reject();
                          }
                        });
}

}  // namespace quayline
