// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/message.h"

namespace quayline::message {

// The list of routers.
inline constexpr Message kListedRouters{"Routers Loaded:"};
inline constexpr Message kCouldNotFind{"Could Not Find"};
inline constexpr Message kFindTitle{"Find"};

// The scripts of a router.
inline constexpr Message kScriptsFor{"Current Scripts For"};
inline constexpr Message kNoRouterChosen{
    "Please choose a router on the main window first: scripts are saved with their router."};
inline constexpr Message kCannotSaveScript{
    "The script cannot be saved, the old one stays. Is the disk full, or may you not write in the "
    "program's folder?"};
inline constexpr Message kScriptSaved{"Saved."};
inline constexpr Message kUnsavedTitle{"Changes Not Saved"};
inline constexpr Message kUnsaved{
    "There are changes that are not saved. Close this window without them?"};
inline constexpr Message kRestoreTitle{"Restore the Shipped Script"};
inline constexpr Message kRestore{
    "Replace the script in the editor by the one that came with Quayline? It is not saved until "
    "you press \"Update Script\", and Undo (Ctrl+Z) brings yours back."};
// The page beside a script.
inline constexpr Message kJobRunsAlready{
    "A job works on the router. Please wait until it is done, then run the line again."};
inline constexpr Message kPointAtElement{
    "Point at an element of the page. A click writes the line for it into the script."};
inline constexpr Message kPicked{"Name: %1   Number: %2   Text: %3"};
inline constexpr Message kNoLineForIt{"No command works with this element."};
inline constexpr Message kSavePageTitle{"Choose a Folder for the Saved Pages"};
inline constexpr Message kPageSaved{
    "The page is in the folder %1. Your password, keys and addresses were taken out as far as they "
    "can be recognized: please look through the files before you share them."};
inline constexpr Message kPartsNotSaved{"The page also uses these files, which are not saved:"};
inline constexpr Message kFolderInUse{
    "There are other files in %1. Please choose a new folder, or one with saved pages."};
inline constexpr Message kCannotSavePage{
    "The page cannot be saved in %1. Please check that a page is shown, and that you may write "
    "there."};

// A router of the user's own.
inline constexpr Message kRouterNeedsName{"Please type the name of your router."};
inline constexpr Message kRouterNameTaken{
    "There is a router \"%1\" in the list already. Please give it another name."};
inline constexpr Message kCannotAddRouter{
    "The router cannot be saved. Is the disk full, or may you not write in the program's folder?"};
inline constexpr Message kCannotReadRouter{"This file is not a router that can be read:\n%1"};
inline constexpr Message kProblemInLine{"Line %1: %2"};
inline constexpr Message kRouterAdded{
    "Your router is in the list now, with the scripts of \"%1\". If its pages differ, adapt them: "
    "menu Advanced, View Current Scripts For The Selected Router. \"Try on a Page\" there shows "
    "what each line does."};
inline constexpr Message kExportTitle{"Export Router"};
inline constexpr Message kImportTitle{"Import Router"};
inline constexpr Message kRouterFiles{"Router files (*.txt);;All files (*)"};
inline constexpr Message kCannotExport{"The file %1 cannot be written."};
inline constexpr Message kWrongSignature{
    "This file was changed after its author had signed it, so it was not imported."};
inline constexpr Message kImportedFromOther{
    "The router is in the list now. Its script is somebody else's: before it runs for the first "
    "time, you are shown what it may do."};
inline constexpr Message kSignQuestion{
    "Do you want to sign the file? Whoever imports it then sees that it is from you and has not "
    "been changed. It bears the name \"%1\"."};
inline constexpr Message kCannotSign{
    "The file cannot be signed: your key cannot be read or written in the program's folder."};
inline constexpr Message kUnknownLimit{"unknown"};

inline constexpr Message kNoFindings{"Every line can do what it says."};
inline constexpr Message kFindings{"Lines to look at: %1 (errors: %2)"};
inline constexpr Message kFindingError{"Line %1: %2"};
inline constexpr Message kFindingWarning{"Line %1 (warning): %2"};

}  // namespace quayline::message
