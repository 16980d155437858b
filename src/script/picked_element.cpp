// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/picked_element.h"

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

bool Holds(const QString& text, const char* pattern) {
  return text.contains(
      QRegularExpression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption));
}

bool IsButton(const PickedElement& element) {
  static const QStringList kTypes{u"submit"_s, u"button"_s, u"image"_s, u"reset"_s};
  return element.tag == "button"_L1 || (element.tag == "input"_L1 && kTypes.contains(element.type));
}

bool IsTextBox(const PickedElement& element) {
  static const QStringList kOther{u"checkbox"_s, u"radio"_s, u"password"_s, u"hidden"_s, u"file"_s};
  return element.tag == "textarea"_L1 ||
         (element.tag == "input"_L1 && !IsButton(element) && !kOther.contains(element.type));
}

// A separator ends a field of the argument.
bool Fits(const QString& text) { return !text.isEmpty() && !text.contains(u','); }

QString Line(const char* command, const QString& argument) {
  return QLatin1String(command) + u"(\""_s + argument + u"\")"_s;
}

QStringList LinesForButton(const PickedElement& element) {
  for (const QString& name : {element.name, element.id, element.text, element.value}) {
    if (!name.isEmpty()) {
      return {Line("click_button", name)};
    }
  }
  return Fits(element.onclick) ? QStringList(Line("click_onclick", element.onclick + u','))
                               : QStringList();
}

QStringList LinesForLink(const PickedElement& element) {
  const bool is_page = Fits(element.href) && !element.href.startsWith(u'#') &&
                       !element.href.startsWith("javascript:"_L1, Qt::CaseInsensitive);
  return is_page ? QStringList(Line("click_link", element.href + u',')) : LinesForButton(element);
}

QString TextBoxLine(const PickedElement& element) {
  const QString field = element.Key() + u',';
  switch (MeaningOf(element)) {
    case FieldMeaning::kName:
      return Line("set_name", field);
    case FieldMeaning::kStart:
      return Line("set_start_port", field);
    case FieldMeaning::kEnd:
      return Line("set_stop_port", field);
    case FieldMeaning::kPorts:
      return Line("set_port_range", field + u",-"_s);
    case FieldMeaning::kAddress:
      return Line("set_ip", field);
    case FieldMeaning::kUnknown:
    case FieldMeaning::kProtocol:
    case FieldMeaning::kEnabled:
      break;
  }
  return Line("set_custom", field + u","_s + (Fits(element.value) ? element.value : u"value"_s));
}

// The page's words for TCP, UDP and both, where the list is one of protocols.
QString ProtocolWords(const QStringList& options) {
  const auto find = [&](const char* pattern) {
    const auto found = std::ranges::find_if(
        options, [&](const QString& option) { return Holds(option, pattern); });
    return found == options.end() ? QString() : *found;
  };
  const QString tcp = find("^\\W*tcp\\W*$");
  const QString udp = find("^\\W*udp\\W*$");
  const QString both = find("tcp.*udp|udp.*tcp|both|^all$|^any$");
  return tcp.isEmpty() && udp.isEmpty() ? QString() : tcp + u'|' + udp + u'|' + both;
}

QStringList LinesForList(const PickedElement& element) {
  if (const QString words = ProtocolWords(element.options); !words.isEmpty()) {
    return {Line("set_type_choices", words), Line("set_combobox", element.Key() + u',')};
  }
  return {Line("choose_item", element.Key() + u',' + element.options.value(0))};
}

}  // namespace

PickedElement PickedElement::From(const QJsonObject& object) {
  const auto text = [&](const char* key) { return object.value(QLatin1String(key)).toString(); };
  PickedElement element{.tag = text("tag"),
                        .type = text("type"),
                        .name = text("name"),
                        .id = text("id"),
                        .text = text("text"),
                        .value = text("value"),
                        .href = text("href"),
                        .onclick = text("onclick"),
                        .options = {},
                        .number = object.value("number"_L1).toInt(),
                        .frame = object.value("frame"_L1).toInt()};
  for (const auto& option : object.value("options"_L1).toArray()) {
    element.options.append(option.toString());
  }
  return element;
}

FieldMeaning MeaningOf(const PickedElement& field) {
  const QString words = field.name + u' ' + field.id + u' ' + field.text;
  const bool is_box = field.type == "checkbox"_L1;
  if (is_box) {
    return Holds(words, "enable|active|state|status|(^|[^a-z])on($|[^a-z])")
               ? FieldMeaning::kEnabled
               : FieldMeaning::kUnknown;
  }
  if (Holds(words, "proto|type") && (field.tag == "select"_L1 || Holds(words, "proto"))) {
    return FieldMeaning::kProtocol;
  }
  if (Holds(words, "port")) {
    return Holds(words, "end|stop|last|until|(^|[^a-z])to($|[^a-z])|max") ? FieldMeaning::kEnd
           : Holds(words, "start|begin|first|from|min")                   ? FieldMeaning::kStart
                                                                          : FieldMeaning::kPorts;
  }
  if (Holds(words, "(^|[^a-z])ip|addr|server|host|computer|client")) {
    return FieldMeaning::kAddress;
  }
  return Holds(words, "name|desc|service|comment|rule|title") ? FieldMeaning::kName
                                                              : FieldMeaning::kUnknown;
}

QStringList LinesFor(const PickedElement& element) {
  QStringList lines;
  if (IsButton(element)) {
    lines = LinesForButton(element);
  } else if (element.tag == "a"_L1) {
    lines = LinesForLink(element);
  } else if (!Fits(element.Key()) && (IsTextBox(element) || element.type == "password"_L1)) {
    lines = {element.type == "password"_L1
                 ? Line("set_password_by_position", QString::number(element.number))
                 : Line("set_value_by_position", u"value,"_s + QString::number(element.number))};
  } else if (element.type == "password"_L1) {
    lines = {Line("set_password", element.Key() + u',')};
  } else if (IsTextBox(element)) {
    lines = {TextBoxLine(element)};
  } else if (element.tag == "select"_L1 && Fits(element.Key())) {
    lines = LinesForList(element);
  } else if (element.type == "checkbox"_L1 && Fits(element.Key())) {
    lines = {Line("set_checkbox", element.Key() + u',')};
  } else if (element.type == "radio"_L1 && Fits(element.Key())) {
    lines = {Line("set_radiobutton", element.Key() + u",,"_s + element.value)};
  } else if (!element.onclick.isEmpty() || !element.text.isEmpty()) {
    lines = LinesForButton(element);
  }
  if (element.frame > 0 && !lines.isEmpty()) {
    lines.prepend(Line("set_frame_number", QString::number(element.frame)));
  }
  return lines;
}

}  // namespace quayline
