#pragma once
// A PostgreSQL connection through libpq serving the library's SQL: `?` parameters
// become $n, results come back as text and are typed by the columns' type OIDs.

#include "LibraryDb.h"

struct pg_conn;

class TPgDb : public TLibraryDb {
public:
  // Connects to the server the URI names; raises EDatabaseError with the server's
  // reason (unreachable, refused password, missing database) otherwise.
  explicit TPgDb(const QString& AUri);
  ~TPgDb() override;
  TPgDb(const TPgDb&) = delete;
  TPgDb& operator=(const TPgDb&) = delete;

  void Exec(const QString& ASql) override;
  void Exec(const QString& ASql, const QVector<QVariant>& AParams) override;
  QVariant Scalar(const QString& ASql, const QVector<QVariant>& AParams = {}) override;
  TDataPacket Query(const QString& ASql, const QVector<QVariant>& AParams = {},
                    const QVector<TFieldDef>& ATypes = {}) override;
  QStringList TableColumns(const QString& ATable) override;
  bool HasTable(const QString& ATable) override;
  QString Location() const override { return FLocation; }
  QString BlobType() const override { return QStringLiteral("BYTEA"); }
  QString RowLock() const override { return QStringLiteral(" FOR UPDATE"); }

  // The URI with its password, if any, masked.
  static QString MaskedUri(const QString& AUri);
  // `?` marks outside quotes and comments become $1, $2, ...
  static QByteArray NumberedParams(const QString& ASql);

private:
  pg_conn* FConn = nullptr;
  QString FLocation;
};
