#pragma once
// A PostgreSQL server of the tests' own: initdb into a temporary directory, started on
// a Unix socket inside it with no TCP port, stopped when the process ends. Each test
// takes a fresh database from it.

#include <QString>
#include <QStringList>

#include <memory>

class QTemporaryDir;

class TPgTestServer {
public:
  // The process's server, started on first use. Running() says whether it could be.
  static TPgTestServer& Shared();
  ~TPgTestServer();

  bool Running() const { return FRunning; }
  // Why the server is not running: no server binaries, or a failed start (with its log).
  const QString& Why() const { return FWhy; }
  // True when the binaries are missing, the only reason a test may skip.
  bool Missing() const { return FMissing; }

  // A new empty database; returns its URI.
  QString CreateDatabase();
  QString Uri(const QString& ADatabase, const QString& AUser = QStringLiteral("postgres"),
              const QString& APassword = {}) const;
  // A role that must give PasswordUser()'s password over the socket.
  static QString PasswordUser() { return QStringLiteral("dse_pw"); }
  static QString Password() { return QStringLiteral("right-password"); }
  QString SocketDir() const;
  // Runs SQL as the superuser in ADatabase; returns false with the message in AError.
  bool Exec(const QString& ADatabase, const QString& ASql, QString* AError = nullptr) const;

private:
  TPgTestServer();
  bool Start();
  bool Run(const QString& AProgram, const QStringList& AArgs, QString* AOutput = nullptr) const;

  std::unique_ptr<QTemporaryDir> FDir;
  QString FBinDir;
  bool FRunning = false, FMissing = false, FAsPostgres = false;
  QString FWhy;
  int FNextDb = 0;
};
