// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/script_highlighter.h"

#include "script/script_line.h"
#include "script/script_lint.h"
#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

constexpr qreal kTint = 0.15;  // a wave of one pixel is overlooked

}  // namespace

ScriptHighlighter::ScriptHighlighter(QTextDocument* document, const QPalette& palette)
    : QSyntaxHighlighter(document), palette_(palette) {}

void ScriptHighlighter::SetPalette(const QPalette& palette) {
  palette_ = palette;
  rehighlight();
}

void ScriptHighlighter::highlightBlock(const QString& line) {
  const auto size = static_cast<int>(line.size());
  const ScriptLine parsed = ParseScriptLine(line);
  QTextCharFormat format;
  if (FindCommand(parsed.name) != nullptr) {
    format.setForeground(palette_.color(QPalette::Link));
    format.setFontWeight(QFont::Bold);
    setFormat(0, static_cast<int>(parsed.name.size()), format);
  } else {
    format.setForeground(palette_.color(QPalette::PlaceholderText));
    format.setFontItalic(true);
    setFormat(0, size, format);
  }
  for (const LintFinding& finding : LintScriptLine(line)) {
    Underline(
        static_cast<int>(finding.start), static_cast<int>(finding.length),
        finding.severity == LintSeverity::kError ? ErrorColor(palette_) : WarningColor(palette_));
  }
}

void ScriptHighlighter::Underline(int start, int length, const QColor& color) {
  for (int i = start; i < start + length; ++i) {
    QTextCharFormat marked = format(i);
    marked.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    marked.setUnderlineColor(color);
    marked.setBackground(Mixed(palette_.color(QPalette::Base), color, kTint));
    setFormat(i, 1, marked);
  }
}

}  // namespace quayline
