// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "dbtool/program_texts.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>

#include "dbtool/code_tokens.h"

namespace quayline::dbtool {

namespace {

using Kind = CodeToken::Kind;
using Tokens = QList<CodeToken>;

constexpr QLatin1String kMessage("Message");

// Folders whose sentences a user of the windows may read. The others are of the command line.
constexpr const char* kShownFolders[] = {"ui/",     "app/",    "core/",      "net/", "platform/",
                                         "script/", "update/", "transport/", "i18n/"};
// Files without a sentence that the windows show, or with English ones on purpose.
constexpr const char* kEnglishFiles[] = {
    "script/command",            // the help of script commands, and their reference
    "script/status_text",        // the words of the protocol
    "script/saved_page",         // the language of pages
    "script/web/",               //
    "core/native_programs",      // names of programs, and what their settings look like
    "core/program_sources",      //
    "core/row_evidence",         // words on the pages of routers
    "core/cell_text",            //
    "core/records",              // fields of databases
    "transport/http_",           // the language of servers
    "transport/sock_error",      // errors of sockets, which only the log has
    "platform/linux/nft_",       // the language of a firewall
    "platform/linux/ufw_",       //
    "platform/linux/firewalld",  //
    "net/repair_commands",       // commands of systems
    "platform/linux/linux_desktop",
};

// Calls whose texts are for developers and for the command line.
constexpr const char* kDeveloperCalls[] = {"qCDebug",
                                           "qFatal",
                                           "qCInfo",
                                           "qCWarning",
                                           "qWarning",
                                           "Q_ASSERT_X",
                                           "fprintf",
                                           "static_assert",
                                           "QCommandLineOption",
                                           "Q_LOGGING_CATEGORY",
                                           "setApplicationDescription",
                                           "addPositionalArgument",
                                           "ForCommandLine",
                                           "QDBusError",
                                           "DLError",
                                           "Execute",
                                           "Query"};

bool HasWords(QString text) {
  static const QRegularExpression placeholder(QStringLiteral("%\\d"));
  return std::ranges::any_of(text.remove(placeholder), [](QChar c) { return c.isLetter(); });
}

void AddLines(ProgramTexts& found, const ProgramText& text) {
  for (const QString& line : text.english.split(u'\n', Qt::SkipEmptyParts)) {
    if (!HasWords(line)) {
      continue;
    }
    const ProgramText one{.english = line, .note = text.note, .place = text.place};
    (line.contains(u'|') ? found.unreachable : found.texts).append(one);
  }
}

// The index after the bracket that closes the one at `open`.
qsizetype EndOfGroup(const Tokens& tokens, qsizetype open) {
  int depth = 0;
  qsizetype at = open;
  do {
    depth += tokens.at(at).Is(u'{') ? 1 : tokens.at(at).Is(u'}') ? -1 : 0;
    ++at;
  } while (depth > 0 && at < tokens.size());
  return at;
}

class CodeReader final {
 public:
  CodeReader(const QString& code, QString place, const QStringList& structs)
      : tokens_(ReadCodeTokens(code)), place_(std::move(place)), structs_(structs) {}

  ProgramTexts ReadAll() {
    for (qsizetype at = 0; at < tokens_.size(); ++at) {
      if (const qsizetype open = OpeningOfTexts(at); open >= 0) {
        TakeGroup(open);
      }
    }
    FindSentences();
    return std::move(found_);
  }

 private:
  // If a definition of a Message, of several, or of a struct of them begins at `at`: where its
  // values begin.
  qsizetype OpeningOfTexts(qsizetype at) const {
    const CodeToken& type = tokens_.at(at);
    if (type.kind != Kind::kWord || (type.text != kMessage && !structs_.contains(type.text)) ||
        (at > 0 && tokens_.at(at - 1).IsWord(QLatin1String("struct")))) {
      return -1;
    }
    qsizetype next = at + 1;
    while (next < tokens_.size() &&
           (tokens_.at(next).kind == Kind::kWord || tokens_.at(next).Is(u'=') ||
            tokens_.at(next).Is(u'[') || tokens_.at(next).Is(u']') || tokens_.at(next).Is(u'>') ||
            tokens_.at(next).Is(u','))) {
      ++next;
    }
    return next < tokens_.size() && tokens_.at(next).Is(u'{') ? next : -1;
  }

  // Each innermost group that begins with a literal is a text, and perhaps a note.
  void TakeGroup(qsizetype open) {
    const qsizetype end = EndOfGroup(tokens_, open);
    for (qsizetype at = open; at + 1 < end; ++at) {
      if (tokens_.at(at).Is(u'{') && tokens_.at(at + 1).kind == Kind::kLiteral) {
        const bool has_note =
            tokens_.at(at + 2).Is(u',') && tokens_.at(at + 3).kind == Kind::kLiteral;
        AddLines(found_, {.english = tokens_.at(at + 1).text,
                          .note = has_note ? tokens_.at(at + 3).text : QString(),
                          .place = place_});
        taken_.insert(at + 1);
        taken_.insert(at + 3);
      }
    }
  }

  // A word or a value, and a word in small letters after a blank: no keyword of a query, and no
  // pattern.
  void FindSentences() {
    static const QRegularExpression sentence(
        QStringLiteral("^(?!SELECT|PRAGMA|INSERT|UPDATE|CREATE|\\^|\\\\).*"
                       "(?:%\\d|[A-Za-z]{2,})[,.;:]? [a-z]{2,}"),
        QRegularExpression::DotMatchesEverythingOption);
    const auto begins = [this](const char* path) { return place_.startsWith(QLatin1String(path)); };
    if (std::ranges::none_of(kShownFolders, begins) || std::ranges::any_of(kEnglishFiles, begins)) {
      return;
    }
    for (qsizetype at = 0; at < tokens_.size(); ++at) {
      if (tokens_.at(at).kind == Kind::kLiteral && !taken_.contains(at) &&
          tokens_.at(at).text.contains(sentence) && !IsForDevelopers(at)) {
        found_.unreachable.append({.english = tokens_.at(at).text, .note = {}, .place = place_});
      }
    }
  }

  // Whether a call before it in its statement is one for developers.
  bool IsForDevelopers(qsizetype at) const {
    for (; at >= 0 && !tokens_.at(at).Is(u';') && !tokens_.at(at).Is(u'}'); --at) {
      const auto is_call = [&](const char* call) {
        return tokens_.at(at).IsWord(QLatin1String(call));
      };
      if (std::ranges::any_of(kDeveloperCalls, is_call)) {
        return true;
      }
    }
    return false;
  }

  Tokens tokens_;
  QString place_;
  const QStringList& structs_;
  ProgramTexts found_;
  QSet<qsizetype> taken_;
};

QByteArray ReadAll(const QString& file_name) {
  QFile file(file_name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList FilesBelow(const QString& folder) {
  QStringList files;
  QDirIterator each(QDir(folder).absolutePath(),
                    {QStringLiteral("*.ui"), QStringLiteral("*.h"), QStringLiteral("*.cpp")},
                    QDir::Files, QDirIterator::Subdirectories);
  while (each.hasNext()) {
    files.append(each.next());
  }
  files.sort();
  return files;
}

}  // namespace

ProgramTexts ReadForm(const QByteArray& xml, const QString& place) {
  ProgramTexts found;
  QXmlStreamReader reader(xml);
  QString property;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) {
      continue;
    }
    if (reader.name() == u"property") {
      property = reader.attributes().value(QLatin1String("name")).toString();
    } else if (reader.name() == u"string" && property != u"shortcut") {
      const QXmlStreamAttributes attributes = reader.attributes();
      const QString note = attributes.value(QLatin1String("comment")).toString();
      const QString text = reader.readElementText();
      if (attributes.value(QLatin1String("notr")) != u"true") {
        AddLines(found, {.english = text, .note = note, .place = place});
      }
    }
  }
  return found;
}

QStringList FindMessageStructs(const QString& code) {
  const Tokens tokens = ReadCodeTokens(code);
  QStringList names;
  for (qsizetype at = 0; at + 2 < tokens.size(); ++at) {
    if (!tokens.at(at).IsWord(QLatin1String("struct")) || !tokens.at(at + 2).Is(u'{')) {
      continue;
    }
    const qsizetype end = EndOfGroup(tokens, at + 2);
    for (qsizetype member = at + 3; member + 2 < end; ++member) {
      const CodeToken& after = tokens.at(member + 2);
      if (tokens.at(member).IsWord(kMessage) && tokens.at(member + 1).kind == Kind::kWord &&
          (after.Is(u';') || after.Is(u'{') || after.Is(u'='))) {
        names.append(tokens.at(at + 1).text);
        break;
      }
    }
  }
  return names;
}

ProgramTexts ReadCode(const QString& code, const QString& place, const QStringList& structs) {
  return CodeReader(code, place, structs).ReadAll();
}

ProgramTexts ReadProgramTexts(const QString& source_folder) {
  const QStringList files = FilesBelow(source_folder);
  QStringList structs;
  for (const QString& file : files) {
    structs += FindMessageStructs(QString::fromUtf8(ReadAll(file)));
  }
  ProgramTexts all;
  QHash<QString, qsizetype> seen;
  for (const QString& file : files) {
    const QString place = QDir(QDir(source_folder).absolutePath()).relativeFilePath(file);
    const QByteArray bytes = ReadAll(file);
    const ProgramTexts found = file.endsWith(QLatin1String(".ui"))
                                   ? ReadForm(bytes, place)
                                   : ReadCode(QString::fromUtf8(bytes), place, structs);
    for (const ProgramText& text : found.texts) {
      const QString key = text.english.toCaseFolded();
      if (const auto first = seen.constFind(key); first == seen.cend()) {
        seen.insert(key, all.texts.size());
        all.texts.append(text);
      } else if (ProgramText& shared = all.texts[*first]; shared.english != text.english) {
        shared.note += QStringLiteral(" Also used for \"%1\" in %2.").arg(text.english, place);
      }
    }
    all.unreachable += found.unreachable;
  }
  // The text of a class that knows no languages, which the window that shows it translates.
  all.unreachable.removeIf(
      [&](const ProgramText& text) { return seen.contains(text.english.toCaseFolded()); });
  return all;
}

}  // namespace quayline::dbtool
