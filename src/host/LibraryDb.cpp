#include "LibraryDb.h"

#include "PgDb.h"
#include "SqliteDb.h"

void TLibraryDb::Begin() {
  Exec(FDepth == 0 ? BeginSql() : QStringLiteral("SAVEPOINT dse_%1").arg(FDepth));
  ++FDepth;
}

void TLibraryDb::Commit() {
  if (FDepth <= 0)
    throw EDatabaseError(QStringLiteral("没有可提交的事务"));
  Exec(FDepth == 1 ? QStringLiteral("COMMIT") : QStringLiteral("RELEASE SAVEPOINT dse_%1").arg(FDepth - 1));
  --FDepth;
}

void TLibraryDb::Rollback() noexcept {
  if (FDepth <= 0)
    return;
  --FDepth;
  try {
    if (FDepth == 0)
      Exec(QStringLiteral("ROLLBACK"));
    else
      Exec(QStringLiteral("ROLLBACK TO SAVEPOINT dse_%1; RELEASE SAVEPOINT dse_%1").arg(FDepth));
  } catch (...) {
    // a lost connection has rolled back already
  }
}

void TLibraryDb::SetKnownNames(const QStringList& ANames) {
  FKnownNames.clear();
  for (const QString& N : ANames)
    FKnownNames.insert(N.toLower(), N);
}

bool IsServerLocation(const QString& ALocation) {
  return ALocation.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive) ||
         ALocation.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

std::unique_ptr<TLibraryDb> ConnectLibraryDb(const QString& ALocation, bool ACreateFile) {
  if (IsServerLocation(ALocation))
    return std::make_unique<TPgDb>(ALocation);
  return std::make_unique<TSqliteDb>(ALocation, ACreateFile);
}
