#pragma once
// The database under a draw-set library: an SQLite file or a PostgreSQL server. Both
// take the same SQL with `?` parameters; where their dialects differ the library asks
// for the piece it needs. Errors raise EDatabaseError with the database's own text.

#include "ClientDataSet.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

// A statement lost a race with another connection (a duplicate key, a deadlock or a
// serialization failure): the caller's check saw no conflict, the database did.
class EDatabaseConflict : public EDatabaseError {
public:
  using EDatabaseError::EDatabaseError;
};

class TLibraryDb {
public:
  virtual ~TLibraryDb() = default;

  // Statements without parameters, several separated by semicolons.
  virtual void Exec(const QString& ASql) = 0;
  virtual void Exec(const QString& ASql, const QVector<QVariant>& AParams) = 0;
  // The first column of the first row, or a null value.
  virtual QVariant Scalar(const QString& ASql, const QVector<QVariant>& AParams = {}) = 0;
  // The rows of a query as a packet; field types from ATypes by column name, else from
  // the column's declared type.
  virtual TDataPacket Query(const QString& ASql, const QVector<QVariant>& AParams = {},
                            const QVector<TFieldDef>& ATypes = {}) = 0;
  virtual QStringList TableColumns(const QString& ATable) = 0;
  virtual bool HasTable(const QString& ATable) = 0;

  // Where the library is, fit for messages (no password).
  virtual QString Location() const = 0;
  virtual QString BlobType() const = 0;
  // Appended to a SELECT of rows the transaction is about to change, so a concurrent
  // writer of the same rows waits and then sees the new values.
  virtual QString RowLock() const { return {}; }

  // Transactions nest: the outermost begins one, inner ones are savepoints.
  void Begin();
  void Commit();
  void Rollback() noexcept;
  int TransactionDepth() const { return FDepth; }

  // Column names as the schema spells them; a server that folds names to lower case
  // hands them back in this spelling.
  void SetKnownNames(const QStringList& ANames);

protected:
  virtual QString BeginSql() const { return QStringLiteral("BEGIN"); }
  QString KnownName(const QString& AName) const { return FKnownNames.value(AName.toLower(), AName); }

private:
  int FDepth = 0;
  QHash<QString, QString> FKnownNames;
};

// Begins on construction; rolls back unless Commit was called.
class TLibraryTransaction {
public:
  explicit TLibraryTransaction(TLibraryDb& ADb) : FDb(ADb) { FDb.Begin(); }
  ~TLibraryTransaction() {
    if (!FDone) FDb.Rollback();
  }
  TLibraryTransaction(const TLibraryTransaction&) = delete;
  TLibraryTransaction& operator=(const TLibraryTransaction&) = delete;
  void Commit() {
    FDb.Commit();
    FDone = true;
  }

private:
  TLibraryDb& FDb;
  bool FDone = false;
};

// A PostgreSQL connection URI (postgresql://… or postgres://…) rather than a file name.
bool IsServerLocation(const QString& ALocation);

// Opens the database at ALocation: a server, or an SQLite file (created when
// ACreateFile and missing).
std::unique_ptr<TLibraryDb> ConnectLibraryDb(const QString& ALocation, bool ACreateFile);
