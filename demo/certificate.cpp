// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/certificate.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

namespace quayline::demo {

namespace {

constexpr int kPatienceMs = 20'000;

std::expected<void, QString> MakeFiles(const QString& certificate_file, const QString& key_file) {
  QProcess openssl;
  openssl.setProcessChannelMode(QProcess::MergedChannels);
  openssl.start(QStringLiteral("openssl"),
                {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                 QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                 QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                 QStringLiteral("-days"), QStringLiteral("30"), QStringLiteral("-subj"),
                 QStringLiteral("/CN=Demo Router"), QStringLiteral("-addext"),
                 QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"), key_file,
                 QStringLiteral("-out"), certificate_file});
  if (!openssl.waitForFinished(kPatienceMs)) {
    return std::unexpected(
        QStringLiteral("openssl cannot make a certificate: %1.").arg(openssl.errorString()));
  }
  if (openssl.exitStatus() != QProcess::NormalExit || openssl.exitCode() != 0) {
    return std::unexpected(QStringLiteral("openssl cannot make a certificate: %1")
                               .arg(QString::fromLocal8Bit(openssl.readAll().trimmed())));
  }
  return {};
}

std::expected<QByteArray, QString> ReadPem(const QString& name) {
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(
        QStringLiteral("\"%1\" cannot be read: %2.").arg(name, file.errorString()));
  }
  return file.readAll();
}

QSslKey ReadKey(const QByteArray& pem) {
  for (const QSsl::KeyAlgorithm algorithm : {QSsl::Rsa, QSsl::Ec}) {
    const QSslKey key(pem, algorithm);
    if (!key.isNull()) {
      return key;
    }
  }
  return {};
}

}  // namespace

std::expected<QSslConfiguration, QString> ServerCertificate(const QString& certificate_file,
                                                            const QString& key_file) {
  if (certificate_file.isEmpty() && key_file.isEmpty()) {
    const QTemporaryDir folder;
    const QString certificate = folder.filePath(QStringLiteral("certificate.pem"));
    const QString key = folder.filePath(QStringLiteral("key.pem"));
    if (const auto made = MakeFiles(certificate, key); !made) {
      return std::unexpected(made.error());
    }
    return ServerCertificate(certificate, key);
  }
  const auto certificate_pem = ReadPem(certificate_file);
  const auto key_pem = ReadPem(key_file);
  if (!certificate_pem || !key_pem) {
    return std::unexpected(!certificate_pem ? certificate_pem.error() : key_pem.error());
  }
  const QList<QSslCertificate> chain = QSslCertificate::fromData(*certificate_pem);
  const QSslKey key = ReadKey(*key_pem);
  if (chain.isEmpty() || key.isNull()) {
    return std::unexpected(QStringLiteral("\"%1\" holds no %2 in the form of PEM.")
                               .arg(chain.isEmpty() ? certificate_file : key_file,
                                    QLatin1String(chain.isEmpty() ? "certificate" : "key")));
  }
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setLocalCertificateChain(chain);
  configuration.setPrivateKey(key);
  return configuration;
}

}  // namespace quayline::demo
