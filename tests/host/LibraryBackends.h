#pragma once
// The library tests run once on an SQLite file and once on a PostgreSQL database of
// the tests' own server.

#include "DrawSetLibrary.h"
#include "PgTestServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <algorithm>

enum class TBackend { Sqlite, Postgres };

inline std::string BackendName(const testing::TestParamInfo<TBackend>& AInfo) {
  return AInfo.param == TBackend::Sqlite ? "Sqlite" : "Postgres";
}

#define DSE_BACKENDS testing::Values(TBackend::Sqlite, TBackend::Postgres), BackendName

// Skips only where the server programs are not installed, and never under CI.
#define DSE_REQUIRE_POSTGRES()                                                        \
  do {                                                                                \
    TPgTestServer& Pg_ = TPgTestServer::Shared();                                     \
    if (!Pg_.Running()) {                                                             \
      if (Pg_.Missing() && qEnvironmentVariableIsEmpty("CI"))                         \
        GTEST_SKIP() << "PostgreSQL tests skipped: " << Pg_.Why().toStdString();      \
      FAIL() << "no PostgreSQL server for the tests: " << Pg_.Why().toStdString();    \
    }                                                                                 \
  } while (0)

// Where a new library goes: a file in ADir, or a new empty database.
inline QString NewLibraryLocation(TBackend ABackend, const QTemporaryDir& ADir, const QString& AName = QStringLiteral("lib")) {
  if (ABackend == TBackend::Sqlite)
    return ADir.filePath(AName + QStringLiteral(".db"));
  return TPgTestServer::Shared().CreateDatabase();
}

inline QString DatabaseOf(const QString& AUri) { return QUrl(AUri).path().mid(1); }

// A second library holding the same rows as ALocation (which must not be in use).
inline QString CloneLibrary(const QString& ALocation, const QTemporaryDir& ADir) {
  if (!IsServerLocation(ALocation)) {
    const QString Copy = ADir.filePath(QStringLiteral("clone-%1.db").arg(rand()));
    QFile::copy(ALocation, Copy);
    return Copy;
  }
  TPgTestServer& Pg = TPgTestServer::Shared();
  const QString Name = DatabaseOf(ALocation) + QStringLiteral("_c%1").arg(rand() % 100000);
  QString Err;
  if (!Pg.Exec(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE %1 TEMPLATE %2").arg(Name, DatabaseOf(ALocation)), &Err))
    ADD_FAILURE() << Err.toStdString();
  return Pg.Uri(Name);
}

// Every row of every table as sorted text: equal dumps mean an unchanged library.
inline QString DumpLibrary(const QString& ALocation) {
  auto Lib = TDrawSetLibrary::Open(ALocation);
  QStringList Lines;
  for (const QString& Table : TDrawSetLibrary::TableNames()) {
    const TDataPacket Rows = Lib->Db().Query(QStringLiteral("SELECT * FROM %1").arg(Table));
    for (const TPacketRow& R : Rows.Rows) {
      QString Line = Table;
      for (const QVariant& V : R.Values)
        Line += u'|' + (V.isNull() ? QStringLiteral("<null>")
                        : V.typeId() == QMetaType::QByteArray ? QString::number(qHash(V.toByteArray()))
                                                              : V.toString());
      Lines << Line;
    }
  }
  std::sort(Lines.begin(), Lines.end());
  return Lines.join(u'\n');
}
