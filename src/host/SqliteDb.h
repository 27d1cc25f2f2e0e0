#pragma once
// A thin owner of an SQLite connection and its statements; errors raise
// EDatabaseError with SQLite's own text.

#include "LibraryDb.h"

#include <QString>
#include <QVariant>
#include <QVector>

struct sqlite3;
struct sqlite3_stmt;

class TSqliteStatement {
public:
  TSqliteStatement(sqlite3* ADb, const QString& ASql);
  ~TSqliteStatement();
  TSqliteStatement(const TSqliteStatement&) = delete;
  TSqliteStatement& operator=(const TSqliteStatement&) = delete;

  void Bind(int AIndex, const QVariant& AValue);  // 1-based
  void BindAll(const QVector<QVariant>& AValues);
  bool Step();   // true while a row is ready
  void Reset();
  int ColumnCount() const;
  QString ColumnName(int AIndex) const;
  QString ColumnDeclType(int AIndex) const;  // empty for expressions
  QVariant Column(int AIndex) const;  // integers as qint64, text as QString, blobs as QByteArray

private:
  sqlite3* FDb;
  sqlite3_stmt* FStmt = nullptr;
  QString FSql;
};

class TSqliteDb : public TLibraryDb {
public:
  // Opens (AllowCreate: or creates) the file; raises EDatabaseError when it cannot.
  TSqliteDb(const QString& AFileName, bool AAllowCreate);
  ~TSqliteDb() override;
  TSqliteDb(const TSqliteDb&) = delete;
  TSqliteDb& operator=(const TSqliteDb&) = delete;

  void Exec(const QString& ASql) override;
  void Exec(const QString& ASql, const QVector<QVariant>& AParams) override;
  QVariant Scalar(const QString& ASql, const QVector<QVariant>& AParams = {}) override;
  // Without a declared type, a column's type comes from its first non-null value
  // (text when all are null).
  TDataPacket Query(const QString& ASql, const QVector<QVariant>& AParams = {},
                    const QVector<TFieldDef>& ATypes = {}) override;
  QStringList TableColumns(const QString& ATable) override;
  bool HasTable(const QString& ATable) override;
  QString Location() const override { return FFileName; }
  QString BlobType() const override { return QStringLiteral("BLOB"); }

  sqlite3* Handle() const { return FDb; }
  const QString& FileName() const { return FFileName; }

protected:
  // Writers queue at the start, so a check made inside the transaction holds to its end.
  QString BeginSql() const override { return QStringLiteral("BEGIN IMMEDIATE"); }

private:
  sqlite3* FDb = nullptr;
  QString FFileName;
};
