// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace quayline {

// An element of a page as the agent describes it.
struct PickedElement {
  QString tag;   // lower case, as is the type
  QString type;  // of an input: "text", "checkbox", ...
  QString name;
  QString id;
  QString text;  // of a button its caption, of a field its label
  QString value;
  QString href;
  QString onclick;
  QStringList options;  // of a list
  int number = 0;       // of the element in its document, as set_value_by_position counts
  int frame = 0;        // 0: the page itself; -1: a frame that no script can name

  static PickedElement From(const QJsonObject& object);

  // By which commands find it: its name, or else its id; empty where it has neither.
  QString Key() const { return name.isEmpty() ? id : name; }
};

// What a field of a form is for, as far as its name and label say.
enum class FieldMeaning { kUnknown, kName, kStart, kEnd, kPorts, kAddress, kProtocol, kEnabled };
FieldMeaning MeaningOf(const PickedElement& field);

// The lines of a script that use the element: a line, with a line before it where it needs one.
// Empty for an element that nothing can be done with.
QStringList LinesFor(const PickedElement& element);

}  // namespace quayline
