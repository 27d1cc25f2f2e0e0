#pragma once
// A thin owner of an SQLite connection and its statements; errors raise
// EDatabaseError with SQLite's own text.

#include "ClientDataSet.h"

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

class TSqliteDb {
public:
  // Opens (AllowCreate: or creates) the file; raises EDatabaseError when it cannot.
  TSqliteDb(const QString& AFileName, bool AAllowCreate);
  ~TSqliteDb();
  TSqliteDb(const TSqliteDb&) = delete;
  TSqliteDb& operator=(const TSqliteDb&) = delete;

  void Exec(const QString& ASql);
  void Exec(const QString& ASql, const QVector<QVariant>& AParams);
  // The first column of the first row, or a null value.
  QVariant Scalar(const QString& ASql, const QVector<QVariant>& AParams = {});
  // The rows of a query as a packet; field types from ATypes by column name, else
  // from the first non-null value (text when all are null).
  TDataPacket Query(const QString& ASql, const QVector<QVariant>& AParams = {},
                    const QVector<TFieldDef>& ATypes = {});
  sqlite3* Handle() const { return FDb; }
  const QString& FileName() const { return FFileName; }

private:
  sqlite3* FDb = nullptr;
  QString FFileName;
};

// BEGIN IMMEDIATE on construction; ROLLBACK unless Commit was called.
class TSqliteTransaction {
public:
  explicit TSqliteTransaction(TSqliteDb& ADb);
  ~TSqliteTransaction();
  void Commit();

private:
  TSqliteDb& FDb;
  bool FDone = false;
};
