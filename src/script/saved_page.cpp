// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/saved_page.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "core/save_file.h"
#include "script/picked_element.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

const QRegularExpression::PatternOptions kAnyCase = QRegularExpression::CaseInsensitiveOption;

// Replaces each match by what `make` makes of it.
template <typename Make>
QString Replaced(const QString& text, const QRegularExpression& pattern, const Make& make) {
  QString replaced;
  qsizetype end = 0;
  for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
    replaced += text.sliced(end, match.capturedStart() - end) + make(match);
    end = match.capturedEnd();
  }
  return replaced + text.sliced(end);
}

bool IsHomeAddress(const QString& text) {
  const QHostAddress address(text);
  return address.isNull() || address.isLoopback() || address.isMulticast() ||
         address.isInSubnet(QHostAddress(u"10.0.0.0"_s), 8) ||
         address.isInSubnet(QHostAddress(u"172.16.0.0"_s), 12) ||
         address.isInSubnet(QHostAddress(u"192.168.0.0"_s), 16) ||
         address.isInSubnet(QHostAddress(u"0.0.0.0"_s), 8) || text.startsWith("255."_L1);
}

// A dotted number may also be a version; a false alarm costs nothing.
QString WithoutAddresses(const QString& text) {
  static const QRegularExpression kIp(u"(?<![\\d.])(?:\\d{1,3}\\.){3}\\d{1,3}(?![\\d.])"_s);
  static const QRegularExpression kIp6(
      u"(?<![0-9a-f:])(?:[23][0-9a-f]{3}|f[cd][0-9a-f]{2}):(?:[0-9a-f]{0,4}:){1,6}[0-9a-f]{0,4}"_s,
      kAnyCase);
  static const QRegularExpression kHardware(
      u"(?<![0-9a-f])(?:[0-9a-f]{2}([:-]))(?:[0-9a-f]{2}\\1){4}[0-9a-f]{2}(?![0-9a-f])"_s,
      kAnyCase);
  QString cleaned = Replaced(text, kIp, [](const QRegularExpressionMatch& match) {
    return IsHomeAddress(match.captured()) ? match.captured() : u"203.0.113.1"_s;
  });
  cleaned.replace(kIp6, u"2001:db8::1"_s);
  cleaned = Replaced(cleaned, kHardware, [](const QRegularExpressionMatch& match) {
    return u"02"_s + (match.captured(1) + u"00"_s).repeated(5);
  });
  // The same without anything between the digits: a whole value, or a whole text.
  static const QRegularExpression kBareHardware(
      u"(?<=[\"'>=])(?=[0-9]*[a-f])[0-9a-f]{12}(?=[\"'<&\\\\])"_s, kAnyCase);
  return cleaned.replace(kBareHardware, u"020000000000"_s);
}

// How fields and variables are called that hold what is secret, or tell who the owner is.
constexpr char16_t kSecretNames[] =
    u"(?:pass(?:word|wd|phrase|key)?|pwd|psk|wpa|wep|secret|token|stok|[cx]srf|nonce|sess(?:ion|id)"
    u"|"
    u"(?<![a-z])sid(?![a-z])|cookie|credential|serial|imei|imsi|"
    "iccid|pin|ssid|ppp\\w*user|e?mail|ddns|"
    "(?:private|public|pre_?shared|shared|network|wlan|wifi|auth|encrypt\\w*)[-_]?key)\\w*";

QRegularExpression SecretPattern(const QString& before, const QString& after) {
  return QRegularExpression(before + QString::fromUtf16(kSecretNames) + after, kAnyCase);
}

// By their names, in scripts and in data: wpa_psk = "...", "serial": "...", in JSON inside a text,
// <PreSharedKey>...</PreSharedKey>, &pwd=...
QString WithoutKeys(QString text) {
  static const QRegularExpression kQuoted =
      SecretPattern(u"("_s, u"\\\\?[\"']?\\s*[:=]\\s*)(\\\\?[\"'])(?:(?!\\2).){1,200}\\2"_s);
  static const QRegularExpression kElement = SecretPattern(u"(<\\w*"_s, u">)[^<]{1,200}(?=</)"_s);
  static const QRegularExpression kArgument =
      SecretPattern(u"([?&](?:amp;)?\\w*"_s, u"=)[^&\"'\\s<>]{1,200}"_s);
  static const QRegularExpression kInPath =
      SecretPattern(u"(;\\w*"_s, u"=)[^/&?;\"'\\s<>]{1,200}"_s);
  static const QRegularExpression kNumber(
      u"((?<![a-z])(?:wps_?)?(?:pin|psk|pass(?:word|wd)?|serial)(?:_?(?:code|no|number))?"
      u"\\\\?[\"']?\\s*[:=]\\s*)\\d{4,}"_s,
      kAnyCase);
  text = Replaced(text, kQuoted, [](const QRegularExpressionMatch& match) {
    return match.captured(1) + match.captured(2) + u"removed"_s + match.captured(2);
  });
  text.replace(kElement, u"\\1removed"_s);
  text.replace(kInPath, u"\\1removed"_s);
  text = Replaced(text, kNumber,
                  [](const QRegularExpressionMatch& match) { return match.captured(1) + u'0'; });
  return text.replace(kArgument, u"\\1removed"_s);
}

// The value of a field that is a password box, or is named like something secret.
QString WithoutSecretValues(QString markup) {
  static const QRegularExpression kField(u"<(?:input|meta)\\b[^>]*>"_s, kAnyCase);
  static const QRegularExpression kIsSecret = SecretPattern(
      u"type\\s*=\\s*[\"']?password|(?:name|id)\\s*=\\s*[\"']?[^\"'\\s>]*(?:key|"_s, u")"_s);
  static const QRegularExpression kValue(
      u"(\\b(?:value|content)\\s*=\\s*)(?:\"[^\"]*\"|'[^']*'|[^\\s>\"']+)"_s, kAnyCase);
  static const QRegularExpression kArea = SecretPattern(
      u"(<textarea\\b[^>]*(?:name|id)\\s*=\\s*[\"']?[^\"'\\s>]*"_s, u"[^>]*>)[^<]*"_s);
  markup.replace(kArea, u"\\1removed"_s);
  // A hidden value that looks drawn by lot is the session's, whatever its name.
  static const QRegularExpression kIsDrawn(
      u"(?=.*type\\s*=\\s*[\"']?hidden).*\\bvalue\\s*=\\s*[\"']?"
      u"(?=(?:[^\\d\"']*\\d){3})(?=[^\"']*[a-z])[\\w+/=-]{16,}[\"'\\s>/]"_s,
      kAnyCase | QRegularExpression::DotMatchesEverythingOption);
  return Replaced(markup, kField, [](const QRegularExpressionMatch& field) {
    QString tag = field.captured();
    return tag.contains(kIsSecret) || tag.contains(kIsDrawn)
               ? tag.replace(kValue, u"\\1\"removed\""_s)
               : tag;
  });
}

// What a page shows beside a word for a key: "<td>Wi-Fi key</td><td>...</td>", "Wi-Fi key: ...".
// Captions of buttons and links stay, and so does what is short or has blanks.
QString WithoutShownKeys(QString markup) {
  const QString label =
      u"(>[^<>]{0,40}(?:pass(?:word|wd|phrase|key)|\\bkey\\b|\\bpsk\\b|\\bpin\\b|serial|kennwort|"
      u"passwort|schl(?:ü|&uuml;)ssel|mot de passe|contrase(?:ñ|&ntilde;)a|\\bclave\\b|\\bsenha\\b|"
      u"\\bchave\\b|wachtwoord|sleutel|has(?:ł|&lstrok;)o|пароль|ключ|şifre|密码|密钥|パスワード)"
      u"[^<>]{0,30}"_s;
  const QString end =
      u"[^\\s<>]{8,}(?=\\s*</(?:td|dd|span|div|b|strong|em|p|code|font|tt|li)\\b)"_s;
  static const QRegularExpression kInNextCell(
      label +
          u"<(?:/?(?:td|dt|dd|tr|th|span|div|b|strong|em|p|br|code|label|font|tt)\\b[^>]*>[\\s:]*<)"
          u"{1,5}(?:td|dd|span|div|b|strong|em|p|code|font|tt)\\b[^>]*>\\s*)"_s +
          end,
      kAnyCase);
  static const QRegularExpression kInSameText(label + u"[:=]\\s*)"_s + end, kAnyCase);
  markup.replace(kInNextCell, u"\\1removed"_s);
  return markup.replace(kInSameText, u"\\1removed"_s);
}

QString WithoutLogin(QString text, const PageSecrets& secrets) {
  constexpr qsizetype kShortest = 3;  // shorter ones are parts of any word
  // "admin" for both is how routers are sold, and part of the names of many pages.
  if (secrets.password.isEmpty() || secrets.password == secrets.username) {
    return text;
  }
  const QString basic =
      QString::fromLatin1((secrets.username + u':' + secrets.password).toUtf8().toBase64());
  const QByteArray bytes = secrets.password.toUtf8();
  for (const QString& secret :
       {secrets.password, secrets.password.toHtmlEscaped(), basic,
        QString::fromLatin1(bytes.toBase64()), QString::fromLatin1(bytes.toPercentEncoding())}) {
    if (secret.size() >= kShortest) {
      text.replace(secret, u"removed"_s);
    }
  }
  return text;
}

// What the pages of the form send for a member of a rule.
std::optional<QString> MemberOf(const PickedElement& field) {
  switch (MeaningOf(field)) {
    case FieldMeaning::kName:
      return u"name"_s;
    case FieldMeaning::kStart:
    case FieldMeaning::kPorts:
      return u"start"_s;
    case FieldMeaning::kEnd:
      return u"end"_s;
    case FieldMeaning::kAddress:
      return u"address"_s;
    case FieldMeaning::kProtocol:
      return u"protocol"_s;
    case FieldMeaning::kEnabled:
      return u"enabled"_s;
    case FieldMeaning::kUnknown:
      break;
  }
  return std::nullopt;
}

QJsonObject RowFor(const QJsonObject& form, const QString& path, const PageSecrets& secrets) {
  QJsonObject rule;
  for (const auto& value : form.value("fields"_L1).toArray()) {
    const PickedElement field = PickedElement::From(value.toObject());
    const std::optional<QString> member = MemberOf(field);
    if (member && !field.name.isEmpty() && !rule.contains(*member)) {
      rule.insert(*member, u'$' + field.name);
    }
  }
  const QString action = CleanedPage(form.value("action"_L1).toString(), secrets);
  const QString verb = form.value("method"_L1).toString() == "post"_L1 ? u"POST "_s : u"GET "_s;
  QJsonObject row{{u"on"_s, verb + (action.startsWith(u'/') ? action : path)},
                  {u"answer"_s, QJsonObject{{u"redirect"_s, path}}}};
  if (rule.contains(u"start"_s)) {
    row.insert(u"do"_s, u"add"_s);
    row.insert(u"rule"_s, rule);
  }
  return row;
}

}  // namespace

QString CleanedPage(QString markup, const PageSecrets& secrets) {
  return WithoutAddresses(
      WithoutKeys(WithoutShownKeys(WithoutSecretValues(WithoutLogin(std::move(markup), secrets)))));
}

QString FileNameOf(const QString& path) {
  QString name = path.endsWith(u'/') ? path + u"index.html"_s : path;
  QStringList parts;
  for (const QString& part : name.split(u'/', Qt::SkipEmptyParts)) {
    static const QRegularExpression kOther(u"[^\\w.()@~+=,%-]"_s);
    QString kept = part;
    kept.replace(kOther, u"_"_s);
    parts.append(kept.startsWith(u'.') ? u'_' + kept : kept);
  }
  return parts.isEmpty() ? u"index.html"_s : parts.join(u'/');
}

namespace {

// A frame may show another page than the one that its page began with.
QString WithShownFrames(const QString& markup, const QJsonArray& frames) {
  static const QRegularExpression kFrame(u"<i?frame\\b[^>]*>"_s, kAnyCase);
  static const QRegularExpression kSource(u"\\ssrc=\"([^\"]*)\""_s, kAnyCase);
  qsizetype next = 0;
  return Replaced(markup, kFrame, [&frames, &next](const QRegularExpressionMatch& match) {
    QString tag = match.captured();
    const QJsonObject frame = frames.at(next).toObject();
    QString written = frame["src"_L1].toString();
    written.replace(u'&', "&amp;"_L1).replace(u'"', "&quot;"_L1);
    const QRegularExpressionMatch source = kSource.match(tag);
    if (source.captured(1) != written) {
      return tag;  // a text of a script
    }
    ++next;
    const QString path = frame["path"_L1].toString();
    if (!path.isEmpty()) {
      tag.remove(kSource);
      tag.insert(tag.size() - 1, u" src=\""_s + path.toHtmlEscaped() + u'"');
    }
    return tag;
  });
}

}  // namespace

QMap<QString, QByteArray> SavedPage(const QJsonArray& documents, const PageSecrets& secrets) {
  QMap<QString, QByteArray> files;
  QJsonArray answers;
  for (const auto& value : documents) {
    const QJsonObject document = value.toObject();
    const QString path = CleanedPage(document.value("path"_L1).toString(), secrets);
    files.insert(FileNameOf(path),
                 CleanedPage(WithShownFrames(document.value("markup"_L1).toString(),
                                             document.value("frames"_L1).toArray()),
                             secrets)
                     .toUtf8());
    for (const auto& form : document.value("forms"_L1).toArray()) {
      const QJsonObject row = RowFor(form.toObject(), path, secrets);
      if (row.value("on"_L1).toString().startsWith("POST"_L1)) {
        answers.append(row);
      }
    }
  }
  files.insert(u"answers.json"_s, QJsonDocument(QJsonObject{{u"answers"_s, answers}}).toJson());
  return files;
}

bool IsForSavedPages(const QString& folder) {
  return QFile::exists(folder + u"/answers.json"_s) || !QFile::exists(folder) ||
         (QFileInfo(folder).isDir() && QDir(folder).isEmpty());
}

bool WriteSavedPage(const QString& folder, const QJsonArray& documents, const PageSecrets& secrets,
                    const QMap<QString, QByteArray>& parts) {
  QMap<QString, QByteArray> files = SavedPage(documents, secrets);
  files.insert(parts);
  const QString name = u"answers.json"_s;
  QFile known(folder + u'/' + name);
  if (known.open(QIODevice::ReadOnly)) {
    QJsonObject all = QJsonDocument::fromJson(known.readAll()).object();
    QJsonArray rows = all.value("answers"_L1).toArray();
    for (const auto& row : QJsonDocument::fromJson(files.value(name))["answers"_L1].toArray()) {
      if (!rows.contains(row)) {
        rows.append(row);
      }
    }
    all.insert("answers"_L1, rows);
    files.insert(name, QJsonDocument(all).toJson());
  }
  for (const auto& [file, bytes] : files.asKeyValueRange()) {
    const QString path = folder + u'/' + file;
    if (!QDir().mkpath(QFileInfo(path).path()) || !SaveFile(path, bytes)) {
      return false;
    }
  }
  return true;
}

}  // namespace quayline
