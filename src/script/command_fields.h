// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/field_spec.h"

// Fields that the commands of several families share.
namespace quayline::command_field {

inline constexpr FieldSpec kBox{
    .name = "field",
    .kind = FieldKind::kElementName,
    .inserted = Inserted::kCurrentName,
    .help = "The name or the id of the element on the page.",
};

inline constexpr FieldSpec kPosition{
    .name = "position",
    .kind = FieldKind::kPosition,
    .when_missing = WhenMissing::kKeepsEarlier,
    .kept_as = KeptAs::kPosition,
    .help = "How many characters before the end the text is inserted; empty for no insertion.",
};

inline constexpr FieldSpec kValue{
    .name = "value",
    .kept_as = KeptAs::kExtraField,
    .help = "The text itself, as the page has it.",
};

inline constexpr FieldSpec kSeparator{
    .name = "separator",
    .when_missing = WhenMissing::kUsesDefault,
    .default_value = "-",
    .kept_as = KeptAs::kExtraField,
    .help = "What is written between the two ports.",
};

inline constexpr FieldSpec kOnlyIfEmpty{
    .name = "only if empty",
    .kind = FieldKind::kTruth,
    .when_missing = WhenMissing::kUsesDefault,
    .default_value = "false",
    .help = "true: a box that already holds something is left alone.",
};

inline constexpr FieldSpec kTemplate{
    .name = "template",
    .inserted = Inserted::kRowName,
    .help = "How the names on the page are written.",
};

inline constexpr FieldSpec kHrefText{
    .name = "href text",
    .kind = FieldKind::kNeededText,
    .inserted = Inserted::kCurrentName,
    .help = "A part of the link's address.",
};

inline constexpr FieldSpec kOnclickText{
    .name = "onclick text",
    .kind = FieldKind::kNeededText,
    .inserted = Inserted::kCurrentName,
    .help = "A part of the element's onclick handler.",
};

inline constexpr FieldSpec kButton{
    .name = "button",
    .kind = FieldKind::kElementName,
    .help = "The name, the caption or the id of the button.",
};

inline constexpr FieldSpec kComboBox{
    .name = "combo box",
    .kind = FieldKind::kElementName,
    .help = "The name of the combo box.",
};

inline constexpr FieldSpec kWords{
    .name = "words",
    .kind = FieldKind::kNeededText,
    .help = "The words, in any case of letters; markup counts as text.",
};

inline constexpr FieldSpec kPath{
    .name = "path",
    .kind = FieldKind::kPath,
    .help = "The address of the page after the router's host and the slash.",
};

inline constexpr FieldSpec kElementNumber{
    .name = "position",
    .kind = FieldKind::kWholeNumber,
    .help = "The number of the element on the page, counted from 0 over all its elements.",
};

inline constexpr FieldSpec kMilliseconds{
    .name = "milliseconds",
    .kind = FieldKind::kMilliseconds,
    .when_missing = WhenMissing::kKeepsEarlier,
    .help = "How long to wait.",
};

inline constexpr FieldSpec kBoxPosition[] = {kBox, kPosition};
inline constexpr FieldSpec kBoxPositionValue[] = {kBox, kPosition, kValue};

}  // namespace quayline::command_field
