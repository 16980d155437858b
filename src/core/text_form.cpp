// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "core/text_form.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <limits>
#include <tuple>

namespace quayline {

namespace {

constexpr QLatin1Char kMark('\\');

constexpr Message kNotUtf8{"This line is not UTF-8."};
constexpr Message kControlCharacter{
    "This line has a control character: write it as \"\\u\" and four hex digits."};
constexpr Message kFileUnreadable{"The file cannot be read: %1."};
constexpr Message kFileTooLarge{"The file is larger than 4 MB."};
constexpr Message kNoId{"\"%1\" is not an ID: an ID is a number from 1 on."};

bool IsControl(QChar c) { return c.category() == QChar::Other_Control; }

}  // namespace

bool HoldErrors(const Problems& problems) {
  return !std::ranges::all_of(problems, &DataProblem::is_warning);
}

QString FormatProblems(Problems problems) {
  std::ranges::sort(problems, {}, [](const DataProblem& problem) {
    return std::make_tuple(problem.file, problem.line, EnglishOf(problem.sentence));
  });
  QString text;
  for (const DataProblem& problem : problems) {
    text += QStringLiteral("%1:%2: %3%4\n")
                .arg(problem.file, QString::number(problem.line),
                     problem.is_warning ? QStringLiteral("warning: ") : QString(),
                     EnglishOf(problem.sentence));
  }
  return text;
}

QList<TextLine> ReadLines(const QByteArray& bytes, const QString& file, Problems& problems) {
  QList<TextLine> lines;
  int number = 0;
  for (QByteArray line : bytes.split('\n')) {
    ++number;
    if (number == 1 && line.startsWith("\xEF\xBB\xBF")) {
      line.remove(0, 3);
    }
    if (line.endsWith('\r')) {
      line.chop(1);
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(line);
    if (decoder.hasError()) {
      problems.append({file, number, {kNotUtf8}});
    } else if (HasControlCharacter(text)) {
      problems.append({file, number, {kControlCharacter}});
    } else {
      lines.append({number, text});
    }
  }
  return lines;
}

QList<TextLine> ReadTextFile(const QString& file, Problems& problems) {
  QFile device(file);
  if (!device.open(QIODevice::ReadOnly)) {
    problems.append({file, 1, {kFileUnreadable, {device.errorString()}}});
    return {};
  }
  const QByteArray bytes = device.read(kMaxTextFileBytes + 1);
  if (device.error() != QFile::NoError) {
    problems.append({file, 1, {kFileUnreadable, {device.errorString()}}});
    return {};
  }
  if (bytes.size() > kMaxTextFileBytes) {
    problems.append({file, 1, {kFileTooLarge}});
    return {};
  }
  return ReadLines(bytes, file, problems);
}

QString EscapedText(const QString& text, QChar separator) {
  QString written(kMark);
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text.at(i);
    const bool is_edge = i == 0 || i + 1 == text.size();
    if (c == kMark) {
      written += QStringLiteral("\\\\");
    } else if (IsControl(c) || (is_edge && c.isSpace()) ||
               (!separator.isNull() && c == separator)) {
      written += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    } else {
      written += c;
    }
  }
  return written;
}

QString WrittenValue(const QString& text, QChar separator) {
  const bool is_plain = text == text.trimmed() && !text.startsWith(kMark) &&
                        std::none_of(text.begin(), text.end(), IsControl) &&
                        (separator.isNull() || !text.contains(separator));
  return is_plain ? text : EscapedText(text, separator);
}

bool HasControlCharacter(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return IsControl(c) && c != QLatin1Char('\t'); });
}

std::optional<QString> ReadWritten(const QString& written) {
  if (!written.startsWith(kMark)) {
    return written;
  }
  QString text;
  for (qsizetype i = 1; i < written.size(); ++i) {
    if (written.at(i) != kMark) {
      text += written.at(i);
      continue;
    }
    const QString digits = written.mid(i + 2, 4);
    bool is_hex = false;
    const ushort code = digits.toUShort(&is_hex, 16);
    if (written.mid(i + 1, 1) == kMark) {
      text += kMark;
      i += 1;
    } else if (written.mid(i + 1, 1) == QLatin1Char('u') && digits.size() == 4 && is_hex) {
      text += QChar(code);
      i += 5;
    } else {
      return std::nullopt;
    }
  }
  return text;
}

std::optional<QString> ReadValue(const QString& written, QChar separator) {
  auto text = ReadWritten(written);
  if (text && written.startsWith(kMark) && WrittenValue(*text, separator) == *text) {
    return std::nullopt;
  }
  return text;
}

std::optional<int> ReadNumber(const QString& text, int most) {
  const bool is_digits = std::all_of(text.begin(), text.end(), [](QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
  });
  bool fits = false;
  const int number = text.toInt(&fits);
  return is_digits && fits && number <= most ? std::optional(number) : std::nullopt;
}

std::optional<int> ReadId(const QString& text) {
  const auto id = ReadNumber(text, std::numeric_limits<int>::max());
  return id && *id > 0 ? id : std::nullopt;
}

Sentence IdSentence(const QString& text) { return {kNoId, {text}}; }

}  // namespace quayline
