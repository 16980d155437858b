// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace quayline {

// What must not leave the user's computer with a page.
struct PageSecrets {
  QString username;
  QString password;
};

// The text of a page, or of a file that it uses, without what belongs to its owner: the login,
// values of password boxes and of hidden fields, keys, serial numbers and tokens by their names,
// hardware addresses, and addresses on the internet. Addresses of home networks stay: pages work
// with them.
QString CleanedPage(QString markup, const PageSecrets& secrets);

// The files of a folder for `quayline-cli try`, by their names: the documents of a page as the
// agent describes them, and "answers.json" with a row for each form.
QMap<QString, QByteArray> SavedPage(const QJsonArray& documents, const PageSecrets& secrets);

// Whether nothing else is in `folder`: it is missing or empty, or holds saved pages.
bool IsForSavedPages(const QString& folder);

// Where a file of this path on the router is in the folder.
QString FileNameOf(const QString& path);

// Writes these files and `parts` into `folder`, which is made if need be. A further page of the
// same router goes into the same folder: its rows are added to "answers.json". False where
// something could not be written.
bool WriteSavedPage(const QString& folder, const QJsonArray& documents, const PageSecrets& secrets,
                    const QMap<QString, QByteArray>& parts = {});

}  // namespace quayline
